#include "SmartActionRunner.h"

#include "HistoryViewModel.h"
#include "LinkMetadataProvider.h"
#include "NumberedCopy.h"
#include "Pasteboard.h"
#include "PictureReading.h"
#include "Support/Graphemes.h"
#include "Support/UrlHost.h"
#include "TextRecognizer.h"
#include "Workspace.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPointer>
#include <QUrl>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::SmartActionEffect;
using ClipboardCore::Utf8Text;

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.actions")

// Linux passes no longer argument to a program (MAX_ARG_STRLEN), and servers take a tenth of it.
constexpr qsizetype longestLink = qsizetype{128} * 1024 - 1;

/// The notices, as the translation context "SmartActionRunner".
struct Notice
{
    Q_DECLARE_TR_FUNCTIONS(SmartActionRunner)
};

bool isLink(const Utf8Text& text)
{
    return !text.isEmpty() && text.byteCount() <= longestLink && ClipboardCore::isUrlReference(text.utf8());
}

QByteArray encodePNG(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

void markOwnChange(const HistoryViewModel& viewModel)
{
    if (viewModel.markOwnChange)
        viewModel.markOwnChange();
}

} // namespace

SmartActionRunner::SmartActionRunner(Services services)
    : m_services(std::move(services))
{
}

SmartActionRunner::~SmartActionRunner()
{
    // A copy that the user was promised is finished.
    m_pool.waitForDone();
}

void SmartActionRunner::perform(const SmartActionEffect& effect, HistoryViewModel& viewModel)
{
    using Kind = SmartActionEffect::Kind;
    switch (effect.kind) {
    case Kind::copy:
        copy(effect.payload, viewModel);
        return;
    case Kind::openURL:
        openURL(effect.payload);
        return;
    case Kind::revealInFinder:
        m_services.workspace.revealFile(effect.payload.toString());
        return;
    case Kind::copyFileToDesktop:
        copyFileToDesktop(effect.payload.toString());
        return;
    case Kind::recognizeText:
        recognizeText(effect.payload.toString(), viewModel);
        return;
    case Kind::copyQRCode:
        copyQRCode(effect.payload, viewModel);
        return;
    case Kind::copyMarkdownLink:
        copyMarkdownLink(effect.payload, viewModel);
        return;
    }
}

void SmartActionRunner::copy(const Utf8Text& text, const HistoryViewModel& viewModel)
{
    m_services.pasteboard.setString(text.utf8());
    markOwnChange(viewModel);
}

void SmartActionRunner::openURL(const Utf8Text& link)
{
    if (isLink(link))
        m_services.workspace.openURL(link.toString());
}

void SmartActionRunner::copyFileToDesktop(const QString& path)
{
    const std::optional<QString> desktop = m_services.workspace.desktopFolder();
    if (!desktop)
        return;
    m_pool.start([path, folder = *desktop] {
        if (!copyNumbered(path, folder))
            qCWarning(log) << "The picture could not be copied to" << folder;
    });
}

void SmartActionRunner::recognizeText(const QString& path, HistoryViewModel& viewModel)
{
    if (PictureReading::announcedSize(path).isEmpty()) {
        m_services.toast(Notice::tr("Couldn't load image"));
        return;
    }
    const auto finish = [this, guard = QPointer(&viewModel),
                         underWay = viewModel.actionUnderWay()](const QStringList& lines) {
        if (!guard)
            return;
        if (lines.isEmpty()) {
            m_services.toast(Notice::tr("No text found"));
            return;
        }
        const Utf8Text text(lines.join(u'\n'));
        copy(text, *guard);
        const qsizetype count = ClipboardCore::Graphemes::countOfUtf8(text.utf8());
        m_services.toast(Notice::tr("Copied %1 chars of text").arg(count));
    };
    m_services.textRecognizer.recognize(path, finish);
}

void SmartActionRunner::copyQRCode(const Utf8Text& text, HistoryViewModel& viewModel)
{
    const std::optional<QImage> code = m_services.qrCode(text.utf8());
    if (!code) {
        m_services.toast(Notice::tr("Couldn't make QR code"));
        return;
    }
    m_services.pasteboard.setPNG(encodePNG(*code));
    markOwnChange(viewModel);
    viewModel.setQrPreview(*code);
    m_services.toast(Notice::tr("QR code copied · scan from preview"));
}

void SmartActionRunner::copyMarkdownLink(const Utf8Text& link, HistoryViewModel& viewModel)
{
    if (!isLink(link))
        return;
    const auto finish = [this, link, guard = QPointer(&viewModel),
                         underWay = viewModel.actionUnderWay()](const std::optional<QString>& title) {
        if (!guard)
            return;
        const QString address = link.toString();
        const QString text = title ? *title : ClipboardCore::urlHost(link.utf8()).value_or(address);
        copy(u'[' + text + u"]("_s + address + u')', *guard);
        m_services.toast(Notice::tr("Copied Markdown link"));
    };
    m_services.linkMetadata.fetchTitle(QUrl(link.toString()), titleLimit, finish);
}

} // namespace Clipboard
