#include "SmartActionRunner.h"

#include "HistoryViewModel.h"
#include "LinkMetadataProvider.h"
#include "NumberedCopy.h"
#include "OffMainThread.h"
#include "Pasteboard.h"
#include "PictureReading.h"
#include "Sealing/StoredFile.h"
#include "Support/Graphemes.h"
#include "Support/UrlHost.h"
#include "TextRecognizer.h"
#include "Workspace.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QPointer>
#include <QUrl>

#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::SmartActionEffect;
using ClipboardCore::ToastText;
using ClipboardCore::Utf8Text;

namespace {

Q_LOGGING_CATEGORY(log, "tessaly.actions")

// Linux passes no longer argument to a program (MAX_ARG_STRLEN), and servers take a tenth of it.
constexpr qsizetype longestLink = qsizetype{128} * 1024 - 1;

constexpr qsizetype hashDigits = 64;

/// The notices, as the translation context "SmartActionRunner".
struct Notice
{
    Q_DECLARE_TR_FUNCTIONS(SmartActionRunner)
};

bool isLink(const Utf8Text& text)
{
    return !text.isEmpty() && text.byteCount() <= longestLink && ClipboardCore::isUrlReference(text.utf8());
}

/// A stored picture's name is a hash, which tells nobody anything: the time of its copy does.
QString readableName(const QString& path)
{
    const QFileInfo file(path);
    if (file.baseName().size() != hashDigits)
        return file.fileName();
    return Notice::tr("Picture %1").arg(file.lastModified().toString(u"yyyy-MM-dd HH.mm.ss"_s)) + u".png"_s;
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
        copyFileToDesktop(effect.payload.toString(), viewModel);
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

void SmartActionRunner::copyFileToDesktop(const QString& path, HistoryViewModel& viewModel)
{
    const std::optional<QString> desktop = m_services.workspace.desktopFolder();
    if (!desktop)
        return copyFileToPictures(path, viewModel);
    m_pool.start([path, folder = *desktop] {
        if (!copyNumbered(path, folder))
            qCWarning(log) << "The picture could not be copied to" << folder;
    });
}

/// Another place than the user was told of: so what is told last is where the picture is.
void SmartActionRunner::copyFileToPictures(const QString& path, HistoryViewModel& viewModel)
{
    const QString folder = m_services.workspace.picturesFolder();
    const auto write = [path, folder] { return copyNumbered(path, folder, readableName(path)); };
    const auto tell = [this, folder, underWay = viewModel.actionUnderWay()](const std::optional<QString>& copy) {
        if (!copy)
            return m_services.toast(ToastText::failure(Notice::tr("Couldn't save image")));
        const QString name = copy->section(u'/', -1);
        m_services.toast(Notice::tr("Saved “%1” to %2").arg(name, QDir(folder).dirName()));
    };
    runOffMainThread(m_pool, &viewModel, write, tell);
}

void SmartActionRunner::recognizeText(const QString& path, HistoryViewModel& viewModel)
{
    if (PictureReading::announcedSize(path).isEmpty()) {
        m_services.toast(ToastText::failure(Notice::tr("Couldn't load image")));
        return;
    }
    const auto finish = [this, guard = QPointer(&viewModel),
                         underWay = viewModel.actionUnderWay()](const QStringList& lines) {
        if (!guard)
            return;
        if (lines.isEmpty()) {
            m_services.toast(ToastText::failure(Notice::tr("No text found")));
            return;
        }
        const Utf8Text text(lines.join(u'\n'));
        copy(text, *guard);
        const qsizetype count = ClipboardCore::Graphemes::countOfUtf8(text.utf8());
        m_services.toast(Notice::tr("Copied %1 chars of text").arg(count));
    };
    if (!ClipboardCore::StoredFile::sealing().seal)
        return m_services.textRecognizer.recognize({path}, finish);
    // The worker has no key.
    const auto read = [path] {
        return ClipboardCore::StoredFile::isSealed(path) ? ClipboardCore::StoredFile::readAll(path) : QByteArray();
    };
    runOffMainThread(m_pool, &viewModel, read, [this, path, finish](const std::optional<QByteArray>& content) {
        if (!content)
            return finish({});
        m_services.textRecognizer.recognize({path, *content}, finish);
    });
}

void SmartActionRunner::copyQRCode(const Utf8Text& text, HistoryViewModel& viewModel)
{
    const std::optional<QImage> code = m_services.qrCode(text.utf8());
    if (!code) {
        m_services.toast(ToastText::failure(Notice::tr("Couldn't make QR code")));
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
