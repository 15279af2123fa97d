#pragma once

#include "X11/XcbConnection.h"

#include <QByteArray>
#include <QHash>
#include <QList>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace Clipboard::Testing {

/// Another program that owns the clipboard, as well or as badly behaved as the test wants it. It lives on a connection
/// and a thread of its own; the calls come from the test's thread.
class ForeignOwner final
{
public:
    /// How one target is answered.
    struct Answer
    {
        enum class Manner {
            AtOnce,           // the whole value in one property
            InPieces,         // INCR, `pieceBytes` at a time
            Mute,             // not at all
            Refuse,           // with no property
            EndlessPieces,    // INCR that never comes to an end
            DieInTheMiddle,   // INCR; after two pieces the connection is closed
            StallInTheMiddle, // INCR; after two pieces nothing more comes
        };
        QByteArray bytes{};
        QByteArray type{}; // empty: the target's name
        int format = 8;
        Manner manner = Manner::AtOnce;
        uint32_t announcedBytes = 0; // what an INCR promises; 0: the truth
        qsizetype pieceBytes = 65536;
    };

    explicit ForeignOwner(const QByteArray& display, const QByteArray& selection = "CLIPBOARD");
    ~ForeignOwner();
    ForeignOwner(const ForeignOwner&) = delete;
    ForeignOwner& operator=(const ForeignOwner&) = delete;

    /// Offers these targets, and TARGETS itself unless it is among them, from the next take() on.
    void offer(const QHash<QByteArray, Answer>& answers);
    void offerText(const QByteArray& utf8) { offer({{"UTF8_STRING", {.bytes = utf8}}}); }
    /// Becomes the owner; returns when the server has done it.
    void take();
    /// Gives the selection up: nobody owns it then.
    void clear();
    /// Closes the connection, as the end of the process does.
    void die();
    /// Asks the clipboard manager to keep the content. True when it answered that it has, false when it refused;
    /// blocks.
    [[nodiscard]] bool save();

    [[nodiscard]] bool ownsSelection();
    /// The targets that were asked for since the last take(), in order.
    [[nodiscard]] QList<QByteArray> asked();
    [[nodiscard]] xcb_window_t window() const { return m_window; }

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

    void run();
    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);
    void sendPiece(Sending& sending);
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
    void put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, const QByteArray& bytes);

    std::unique_ptr<X11::XcbConnection> m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_selection;
    QHash<QByteArray, Answer> m_answers;
    QList<Sending> m_sending;
    std::mutex m_mutex; // guards all of the above, the connection included, and m_asked
    QList<QByteArray> m_asked;
    std::atomic<int> m_saved = -1; // what the manager answered
    std::atomic<bool> m_isDead = false;
    std::thread m_thread;
};

} // namespace Clipboard::Testing
