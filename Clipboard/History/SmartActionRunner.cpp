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

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.actions")

// Linux passes no longer argument to a program (MAX_ARG_STRLEN), and servers take a tenth of it.
constexpr qsizetype longestLink = qsizetype{128} * 1024 - 1;

/// The notices, as the translation context "SmartActionRunner".
struct Notice
{
    Q_DECLARE_TR_FUNCTIONS(SmartActionRunner)
};

bool isLink(const QString& text)
{
    return !text.isEmpty() && text.size() <= longestLink && ClipboardCore::isUrlReference(text.toUtf8());
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
        m_services.workspace.revealFile(effect.payload);
        return;
    case Kind::copyFileToDesktop:
        copyFileToDesktop(effect.payload);
        return;
    case Kind::recognizeText:
        recognizeText(effect.payload, viewModel);
        return;
    case Kind::copyQRCode:
        copyQRCode(effect.payload, viewModel);
        return;
    case Kind::copyMarkdownLink:
        copyMarkdownLink(effect.payload, viewModel);
        return;
    }
}

void SmartActionRunner::copy(const QString& text, const HistoryViewModel& viewModel)
{
    m_services.pasteboard.setString(text.toUtf8());
    markOwnChange(viewModel);
}

void SmartActionRunner::openURL(const QString& link)
{
    if (isLink(link))
        m_services.workspace.openURL(link);
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
    m_services.textRecognizer.recognize(path, [this, guard = QPointer(&viewModel)](const QStringList& lines) {
        if (!guard)
            return;
        if (lines.isEmpty()) {
            m_services.toast(Notice::tr("No text found"));
            return;
        }
        const QString text = lines.join(u'\n');
        copy(text, *guard);
        const qsizetype count = ClipboardCore::Graphemes::countOfUtf8(text.toUtf8());
        m_services.toast(Notice::tr("Copied %1 chars of text").arg(count));
    });
}

void SmartActionRunner::copyQRCode(const QString& text, HistoryViewModel& viewModel)
{
    const std::optional<QImage> code = m_services.qrCode(text.toUtf8());
    if (!code) {
        m_services.toast(Notice::tr("Couldn't make QR code"));
        return;
    }
    m_services.pasteboard.setPNG(encodePNG(*code));
    markOwnChange(viewModel);
    viewModel.setQrPreview(*code);
    m_services.toast(Notice::tr("QR code copied · scan from preview"));
}

void SmartActionRunner::copyMarkdownLink(const QString& link, HistoryViewModel& viewModel)
{
    if (!isLink(link))
        return;
    const auto finish = [this, link, guard = QPointer(&viewModel)](const std::optional<QString>& title) {
        if (!guard)
            return;
        const QString text = title ? *title : ClipboardCore::urlHost(link.toUtf8()).value_or(link);
        copy(u'[' + text + u"]("_s + link + u')', *guard);
        m_services.toast(Notice::tr("Copied Markdown link"));
    };
    m_services.linkMetadata.fetchTitle(QUrl(link), titleLimit, finish);
}

} // namespace Clipboard
