#pragma once

#include "AtomNames.h"
#include "ForeignOwner.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QList>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>
#include <xcb/xcb.h>

namespace Clipboard::Testing {

class VirtualSession;

/// Another program of X11 that copies and pastes. It has a connection of its own; the calls come from one thread.
class ForeignClient final : public ForeignOwner
{
public:
    struct Received
    {
        QByteArray type;
        int format = 0;
        QByteArray bytes;
        bool isIncremental = false;
    };

    explicit ForeignClient(const QByteArray& display, const QByteArray& selection = "CLIPBOARD");
    explicit ForeignClient(const VirtualSession& session, const QByteArray& selection = "CLIPBOARD");
    ~ForeignClient() override;

    /// Offers these targets, and TARGETS itself unless it is among them, from the next take() on.
    void offer(const QHash<QByteArray, Answer>& answers);
    void offerText(const QByteArray& utf8) { offer({{"UTF8_STRING", {.bytes = utf8}}}); }
    /// Becomes the owner; returns when the server has done it.
    void take();
    void copy(const QHash<QByteArray, Answer>& answers) override;
    /// Becomes an owner that never answers, as one that hangs.
    void copyAndHang();
    /// Answers the request that waits, which must have come (see asked()), or refuses it.
    void answerLate();
    void refuseLate();
    void clear() override;
    void die() override;
    /// Asks the clipboard manager to keep the content. The targets that it says it has kept, nothing when it refused;
    /// blocks.
    [[nodiscard]] std::optional<QByteArrayList> save();

    [[nodiscard]] bool ownsSelection() const;
    /// The targets that were asked for since the last take(), in order.
    [[nodiscard]] QByteArrayList asked() const;
    [[nodiscard]] bool isLookedAt() const override { return !asked().isEmpty(); }
    [[nodiscard]] QByteArrayList contentAsked() const override;
    [[nodiscard]] QByteArrayList answered() const override;
    [[nodiscard]] xcb_window_t window() const { return m_window; }

    /// Asks for the selection. Nothing when it is refused or does not come to an end.
    [[nodiscard]] std::optional<Received> convert(const QByteArray& target, xcb_timestamp_t time = XCB_CURRENT_TIME);
    /// The same in steps, so that other things can happen in between.
    void begin(const QByteArray& target, xcb_timestamp_t time = XCB_CURRENT_TIME);
    [[nodiscard]] bool isAccepted(); // waits for the answer
    /// Waits for the next piece; empty at the end, nothing when none comes.
    [[nodiscard]] std::optional<QByteArray> nextPiece();
    /// The names that TARGETS gives.
    [[nodiscard]] QByteArrayList targets();
    /// Several targets in one MULTIPLE request: for each what came, or nothing when it was refused.
    [[nodiscard]] std::vector<std::optional<QByteArray>> convertMultiple(const QByteArrayList& targets);

private:
    struct Sending
    {
        xcb_window_t requestor;
        xcb_atom_t property;
        Answer answer;
        qsizetype sent = 0;
        int pieces = 0;
        bool isFinished = false;
    };
    /// What the asking side waits for.
    struct Arrival
    {
        enum class Kind { answer, piece };
        Kind kind;
        xcb_atom_t property;
    };

    void run();
    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);
    void announce(const xcb_selection_request_event_t& request, const Answer& answer);
    void sendPieces(const xcb_property_notify_event_t& taken);
    void sendPiece(Sending& sending);
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
    void put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, const QByteArray& bytes);
    void hangUp();
    void ask(xcb_atom_t selection, xcb_atom_t target, xcb_timestamp_t time);
    /// The property of the next arrival of that kind; XCB_ATOM_NONE for a refusal and when none comes.
    [[nodiscard]] xcb_atom_t waitFor(Arrival::Kind kind);
    /// Takes over what a property of the window holds, and removes it. The bytes.
    QByteArray receive(xcb_atom_t property);

    xcb_connection_t* m_connection;
    AtomNames m_atoms;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
    xcb_atom_t m_property;
    Received m_received;
    QList<Sending> m_sending; // the thread's own

    mutable std::mutex m_mutex; // guards what follows
    QHash<QByteArray, Answer> m_answers;
    QByteArrayList m_asked;
    QByteArrayList m_answered;
    xcb_selection_request_event_t m_late = {};
    std::deque<Arrival> m_arrivals;
    std::condition_variable m_arrived;

    std::thread m_thread;
};

} // namespace Clipboard::Testing
