#include "ToplevelKeystrokeSender.h"

#include "ClipboardEngine.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <utility>

namespace Clipboard {

namespace {

// Some milliseconds on most machines, more on a busy one.
constexpr std::chrono::milliseconds focusTimeout{2000};
constexpr std::chrono::milliseconds focusInterval{5};

} // namespace

ToplevelKeystrokeSender::ToplevelKeystrokeSender(std::shared_ptr<Wayland::Toplevels> toplevels,
                                                 std::shared_ptr<ClipboardEngine> engine)
    : m_toplevels(std::move(toplevels))
    , m_engine(std::move(engine))
{
}

void ToplevelKeystrokeSender::sendPaste(std::function<void(PasteResult)> done)
{
    QTimer::singleShot(0, this, [this, done = std::move(done)] { waitForFocus(QDeadlineTimer(focusTimeout), done); });
}

void ToplevelKeystrokeSender::waitForFocus(const QDeadlineTimer& deadline, const Done& done)
{
    if (m_toplevels->isFrontBack())
        return waitForWrites(done);
    if (deadline.hasExpired())
        return done(PasteResult::notSent);
    QTimer::singleShot(focusInterval, this, [this, deadline, done] { waitForFocus(deadline, done); });
}

PasteChord ToplevelKeystrokeSender::chord() const
{
    const QByteArray application = m_toplevels->frontApplication().value_or(QString()).toUtf8();
    return pasteChordOf({application, application});
}

void ToplevelKeystrokeSender::waitForWrites(const Done& done)
{
    if (!m_engine)
        return done(send());
    // Only the main thread looks at this object, which may be gone by then.
    m_engine->afterWrites(chord() == PasteChord::ShiftInsert, [self = QPointer(this), done](bool areInForce) {
        const auto goOn = [self, done, areInForce] {
            if (self)
                done(areInForce ? self->send() : PasteResult::notSent);
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), goOn, Qt::QueuedConnection);
    });
}

PasteResult ToplevelKeystrokeSender::send()
{
    if (!m_toplevels->isFrontBack() || !type(chord()))
        return PasteResult::notSent;
    connection().serve();
    return connection().isBroken() ? PasteResult::notSent : PasteResult::sent;
}

} // namespace Clipboard
