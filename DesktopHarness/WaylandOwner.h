#pragma once

#include "ForeignOwner.h"

#include <QList>

#include <atomic>
#include <mutex>
#include <thread>

namespace Clipboard::Testing {

class VirtualSession;

/// Another program of a Wayland session that copies.
class WaylandOwner final : public ForeignOwner
{
public:
    explicit WaylandOwner(const VirtualSession& session);
    ~WaylandOwner() override;

    void copy(const QHash<QByteArray, Answer>& answers) override;
    void clear() override;
    void die() override;
    /// The compositor tells everybody at once.
    [[nodiscard]] bool isLookedAt() const override { return true; }
    [[nodiscard]] QByteArrayList contentAsked() const override;
    [[nodiscard]] QByteArrayList answered() const override;

private:
    struct Objects; // of the protocol

    void run();
    void answer(const QByteArray& type, int pipe);
    /// Writes as the manner says. True when the pipe is to be closed.
    bool send(const Answer& answer, int pipe);

    std::unique_ptr<Objects> m_objects;
    int m_end; // an eventfd: the thread is to end
    std::atomic<bool> m_isOver = false;
    QList<int> m_held; // pipes that are kept open, the thread's own

    mutable std::mutex m_mutex; // guards what follows
    QHash<QByteArray, Answer> m_answers;
    QByteArrayList m_asked;
    QByteArrayList m_answered;

    std::thread m_thread;
};

} // namespace Clipboard::Testing
