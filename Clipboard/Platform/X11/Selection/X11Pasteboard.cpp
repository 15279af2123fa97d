#include "X11Pasteboard.h"

#include "History/CaptureExclusion.h"

#include <QCoreApplication>
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

std::unique_ptr<X11Pasteboard> X11Pasteboard::create(const QByteArray& display)
{
    std::unique_ptr<X11Pasteboard> pasteboard(new X11Pasteboard);
    X11::SelectionEngine::Options options;
    options.display = display;
    options.selections.reading.secretTargets = ClipboardCore::CaptureExclusion::markerTypes() + passwordHints;
    options.selections.reading.hostName = QSysInfo::machineHostName().toUtf8();
    // One queued call a copy: each is seen by those who listen before the next one replaces it.
    options.onChange = [self = pasteboard.get()](const SelectionSnapshot& snapshot) {
        QMetaObject::invokeMethod(
            self, [self, snapshot] { self->take(snapshot); }, Qt::QueuedConnection);
    };
    options.onConnected = [self = pasteboard.get()](bool isConnected) {
        QMetaObject::invokeMethod(
            self, [self, isConnected] { self->setConnected(isConnected); }, Qt::QueuedConnection);
    };
    pasteboard->m_engine = X11::SelectionEngine::start(options);
    if (!pasteboard->m_engine)
        return nullptr;
    return pasteboard;
}

X11Pasteboard::~X11Pasteboard()
{
    if (m_engine)
        m_engine->stop();
}

QString X11Pasteboard::unavailableReason() const
{
    return m_isConnected ? QString()
                         : tr("Copies are not recorded at the moment: the connection to the display was lost.");
}

void X11Pasteboard::setConnected(bool isConnected)
{
    m_isConnected = isConnected;
    emit availabilityChanged();
}

void X11Pasteboard::settle(std::chrono::milliseconds limit)
{
    m_engine->settled().wait_for(limit);
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void X11Pasteboard::leave()
{
    // The engine keeps limits of its own, unless the server hangs.
    m_engine->handOver().wait_for(X11::successorTimeout + 2 * X11::handOverTimeout);
}

void X11Pasteboard::setString(const QByteArray& utf8)
{
    SelectionContent content;
    content.text = utf8;
    write(formsOfText(utf8), std::move(content));
}

void X11Pasteboard::setFile(const QUrl& file)
{
    SelectionContent content;
    content.fileURLs = {file};
    write(formsOfFile(file), std::move(content));
}

void X11Pasteboard::setPNG(const QByteArray& png)
{
    SelectionContent content;
    content.png = png;
    write(formsOfPNG(png), std::move(content));
}

bool X11Pasteboard::setPNGFile(const QString& path)
{
    const auto file = FileHandle::open(path);
    if (!file)
        return false;
    write(formsOfPNGFile(file), {});
    return true;
}

void X11Pasteboard::write(const SelectionForms& forms, SelectionContent content)
{
    for (const auto& form : forms)
        content.types.insert(QString::fromLatin1(form.target));
    m_content = std::move(content);
    ++m_changeCount;
    m_writes = m_engine->own(forms);
}

void X11Pasteboard::take(const SelectionSnapshot& snapshot)
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
    ++m_changeCount;
    const quint64 writesThen = m_writes;
    emit changed();
    if (isOutdated && m_writes == writesThen)
        m_content = std::move(own);
}

} // namespace Clipboard
