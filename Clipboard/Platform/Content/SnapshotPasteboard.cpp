#include "SnapshotPasteboard.h"

#include "History/CaptureExclusion.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSysInfo>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;

namespace {

const QString concealedMarker = u"org.nspasteboard.ConcealedType"_s;

// How password managers of KDE's making and their followers mark a secret. The hint's value is not asked for: nothing
// is read from an owner that offers it.
const QSet<QString> passwordHints{u"x-kde-passwordManagerHint"_s, u"text/x-kde-passwordManagerHint"_s};

} // namespace

ContentReading::Options SnapshotPasteboard::readingOptions()
{
    return {ClipboardCore::CaptureExclusion::markerTypes() + passwordHints, QSysInfo::machineHostName().toUtf8()};
}

std::function<void(const SelectionSnapshot&)> SnapshotPasteboard::changeListener()
{
    // One queued call a copy: each is seen by those who listen before the next one replaces it.
    return [this](const SelectionSnapshot& snapshot) {
        QMetaObject::invokeMethod(
            this, [this, snapshot] { arrive(snapshot); }, Qt::QueuedConnection);
    };
}

std::function<void(bool)> SnapshotPasteboard::connectionListener()
{
    return [this](bool isConnected) {
        QMetaObject::invokeMethod(
            this, [this, isConnected] { setConnected(isConnected); }, Qt::QueuedConnection);
    };
}

bool SnapshotPasteboard::setEngine(std::shared_ptr<ClipboardEngine> engine)
{
    m_engine = std::move(engine);
    return m_engine != nullptr;
}

SnapshotPasteboard::~SnapshotPasteboard()
{
    if (m_engine)
        m_engine->stop();
}

QString SnapshotPasteboard::unavailableReason() const
{
    return m_isConnected ? QString()
                         : tr("Copies are not recorded at the moment: the connection to the display was lost.");
}

void SnapshotPasteboard::setConnected(bool isConnected)
{
    m_isConnected = isConnected;
    emit availabilityChanged();
}

void SnapshotPasteboard::settle(std::chrono::milliseconds limit)
{
    m_engine->settled().wait_for(limit);
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    while (!m_arrived.empty())
        takeNext();
}

void SnapshotPasteboard::setString(const QByteArray& utf8)
{
    SelectionContent content;
    content.text = utf8;
    write(formsOfText(utf8), std::move(content));
}

void SnapshotPasteboard::setFile(const QUrl& file)
{
    SelectionContent content;
    content.fileURLs = {file};
    write(formsOfFile(file), std::move(content));
}

void SnapshotPasteboard::setPNG(const QByteArray& png)
{
    SelectionContent content;
    content.png = png;
    write(formsOfPNG(png), std::move(content));
}

bool SnapshotPasteboard::setPNGFile(const QString& path)
{
    const auto file = FileHandle::open(path);
    if (!file)
        return false;
    write(formsOfPNGFile(file), {});
    return true;
}

void SnapshotPasteboard::write(const SelectionForms& forms, SelectionContent content)
{
    for (const auto& form : forms)
        content.types.insert(QString::fromLatin1(form.target));
    m_content = std::move(content);
    m_isTakenBack = false;
    ++m_changeCount;
    m_writes = m_engine->own(forms);
}

void SnapshotPasteboard::arrive(const SelectionSnapshot& snapshot)
{
    m_arrived.push_back(snapshot);
    if (!m_gate)
        return takeNext();
    m_gate([self = QPointer(this)] {
        if (self)
            self->takeNext();
    });
}

/// The first that came, whichever the gate was opened for.
void SnapshotPasteboard::takeNext()
{
    if (m_arrived.empty())
        return; // settled meanwhile
    const SelectionSnapshot next = std::move(m_arrived.front());
    m_arrived.pop_front();
    take(next);
}

void SnapshotPasteboard::take(const SelectionSnapshot& snapshot)
{
    SelectionContent content = snapshot.content;
    if (content.types.intersects(passwordHints))
        content.types.insert(concealedMarker);
    // A copy that was made before our latest write but is heard of after it: it is shown to those who listen, then our
    // content stands again, as part of the same change.
    const bool isOutdated = snapshot.writesBefore != m_writes;
    if (snapshot.isInitial) {
        if (!isOutdated)
            m_content = std::move(content);
        return;
    }
    SelectionContent own = std::exchange(m_content, std::move(content));
    m_isTakenBack = snapshot.isTakenBack;
    ++m_changeCount;
    const quint64 writesThen = m_writes;
    emit changed();
    if (isOutdated && m_writes == writesThen) {
        m_content = std::move(own);
        m_isTakenBack = false;
    }
}

} // namespace Clipboard
