#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QPair>
#include <QString>

#include <map>
#include <mutex>
#include <thread>

struct xcb_connection_t;
struct xcb_selection_request_event_t;

namespace Clipboard::Testing {

/// A program that copies: it owns CLIPBOARD through its own connection, answers on its own thread, and remembers what
/// it was asked for. Contents have to fit one X request.
class SelectionOwner final
{
public:
    using Offer = QPair<QByteArray, QByteArray>; // target and content

    explicit SelectionOwner(const QString& display);
    ~SelectionOwner();
    SelectionOwner(const SelectionOwner&) = delete;
    SelectionOwner& operator=(const SelectionOwner&) = delete;

    void copy(const QList<Offer>& offers);
    void copyText(const QByteArray& utf8) { copy({{"UTF8_STRING", utf8}}); }
    /// Gives the selection up and lives on, as a password manager does when its time is over.
    void clear();
    /// The targets asked for since the last copy, TARGETS included.
    [[nodiscard]] QByteArrayList requests() const;

    /// Starts a process that takes the selection and is stopped before it can answer a single request. The caller
    /// ends it. Its process id, or -1.
    [[nodiscard]] static int copyAndStop(const QString& display);

private:
    [[nodiscard]] quint32 atom(const QByteArray& name) const;
    void serve();
    void answer(const xcb_selection_request_event_t& request);

    xcb_connection_t* m_connection;
    quint32 m_window = 0;
    mutable std::mutex m_mutex;
    std::map<quint32, Offer> m_offers; // by the target's atom
    QByteArrayList m_requests;
    std::thread m_thread;
};

} // namespace Clipboard::Testing
