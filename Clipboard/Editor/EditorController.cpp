#include "EditorController.h"

#include "EditorWindow.h"
#include "ImageBlobs.h"
#include "OffMainThread.h"
#include "PasteService.h"
#include "PictureTranscoder.h"
#include "QtGraphics.h"
#include "ResultFile.h"
#include "Sealing/StoredFile.h"
#include "WindowSystem.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>
#include <QWindow>

#include <future>
#include <utility>
#include <variant>

using ClipboardCore::AnnotationColor;
using ClipboardCore::AnnotationSession;
using ClipboardCore::AnnotationSize;
using ClipboardCore::EditorExit;
using ClipboardCore::EditorGeneration;

namespace EditorEvents = ClipboardCore::EditorEvents;
namespace EditorOutcomes = ClipboardCore::EditorOutcomes;

using namespace Qt::StringLiterals;

namespace Clipboard {

namespace {

constexpr QLatin1StringView colorKey("editorColor");
constexpr QLatin1StringView sizeKey("editorSize");

// No window manager takes longer to give the keyboard to a window that asks for it, on a busy machine either.
constexpr std::chrono::milliseconds handOver{1500};

/// Nothing when memory is missing. Takes its time.
QImage flattened(const AnnotationSession& session)
{
    const auto picture = session.flatten();
    return picture ? withoutNeedlessAlpha(QtPicture::imageOf(*picture)) : QImage();
}

} // namespace

EditorController::EditorController(QString imagesDir, Services services, QObject* parent)
    : QObject(parent)
    , m_imagesDir(std::move(imagesDir))
    , m_services(std::move(services))
{
    m_pool.setMaxThreadCount(1);
}

EditorController::~EditorController() = default; // the pool waits for its work

AnnotationColor EditorController::rememberedColor()
{
    const QString id = QSettings().value(colorKey).toString();
    return AnnotationColor::withID(id).value_or(ClipboardCore::AnnotationPalette::red);
}

AnnotationSize EditorController::rememberedSize()
{
    const QString name = QSettings().value(sizeKey).toString();
    return ClipboardCore::annotationSizeFromRawValue(name).value_or(AnnotationSize::medium);
}

void EditorController::open(const QImage& picture, QScreen* screen, const AnnotationColor& color, AnnotationSize size,
                            const ClipboardCore::ClipItem& item)
{
    if (picture.isNull())
        return;
    m_screen = screen;
    if (!m_textLayout)
        m_textLayout = std::make_shared<const QtTextLayout>();
    const auto prepare = [image = picture, textLayout = m_textLayout]() mutable {
        return std::make_shared<const QtPicture>(std::move(image), std::move(textLayout));
    };
    const auto show = [this, color, size, item](const std::shared_ptr<const QtPicture>& ready) {
        handle(EditorEvents::Open{AnnotationSession(ready, color, size, m_textLayout), item});
        bringToFront();
    };
    runOffMainThread(m_pool, this, prepare, show);
}

void EditorController::quit()
{
    handle(EditorEvents::Quit{});
    if (m_lifecycle.isConfirmingDiscard())
        bringToFront();
}

void EditorController::keepChanges(std::chrono::milliseconds limit)
{
    if (m_lifecycle.session() == nullptr || !m_lifecycle.session()->hasChanges())
        return;
    AnnotationSession session = *m_lifecycle.session();
    session.endEditing();
    auto promise = std::make_shared<std::promise<std::optional<QString>>>();
    auto written = promise->get_future();
    m_pool.start([promise, session = std::move(session), dir = m_imagesDir] {
        promise->set_value(ImageBlobs::write(flattened(session), dir));
    });
    if (written.wait_for(limit) != std::future_status::ready)
        return;
    if (const auto path = written.get())
        addResult(*path, *m_lifecycle.original());
}

bool EditorController::isInFront() const
{
    return m_window && m_window->isActiveWindow();
}

void EditorController::bringToFront()
{
    if (!m_window)
        return;
    m_services.windows.activate(m_window->windowHandle());
}

// ── Events

void EditorController::handle(const ClipboardCore::EditorEvent& event)
{
    const QList<ClipboardCore::EditorOutcome> outcomes = m_lifecycle.handle(event);
    if (m_lifecycle.session() != nullptr)
        showDocument();
    for (const ClipboardCore::EditorOutcome& outcome : outcomes)
        std::visit([this](const auto& which) { carryOut(which); }, outcome);
}

void EditorController::showDocument()
{
    if (!m_window)
        makeWindow();
    m_window->sync();
    m_window->show();
}

void EditorController::makeWindow()
{
    m_window = std::make_unique<EditorWindow>(m_lifecycle, m_textLayout, m_services.copiedText);
    EditorWindow* window = m_window.get();
    connect(window, &EditorWindow::finishRequested, this, &EditorController::finish);
    connect(window, &EditorWindow::closeRequested, this, [this] { handle(EditorEvents::Close{}); });
    connect(window, &EditorWindow::keepEditingRequested, this, [this] { handle(EditorEvents::KeepEditing{}); });
    connect(window, &EditorWindow::discardRequested, this, [this] { handle(EditorEvents::ConfirmDiscard{}); });
    connect(window, &EditorWindow::saveAsRequested, this, &EditorController::saveAs);
    connect(window, &EditorWindow::colorChosen, this,
            [](const AnnotationColor& color) { QSettings().setValue(colorKey, QString(color.id)); });
    connect(window, &EditorWindow::sizeChosen, this,
            [](AnnotationSize size) { QSettings().setValue(sizeKey, QString(rawValue(size))); });
    window->placeOn(m_screen ? *m_screen : *QGuiApplication::primaryScreen());
}

void EditorController::finish(EditorExit exit)
{
    const ClipboardCore::ClipItem* original = m_lifecycle.original();
    if (original != nullptr)
        handle(EditorEvents::Finish{exit, QFile::exists(original->content.toString())});
}

/// What is on screen now is what will be written. The dialog is the desktop's own, where it has one, and asks before a
/// file is replaced.
void EditorController::saveAs()
{
    AnnotationSession session = *m_lifecycle.session();
    session.endEditing();
    if (m_saveFolder.isEmpty())
        m_saveFolder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    auto* dialog = new QFileDialog(m_window.get(), tr("Save As…"), m_saveFolder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(tr("PNG pictures (*.png)"));
    dialog->setDefaultSuffix(u"png"_s);
    dialog->selectFile(ResultFile::suggestedName(QDateTime::currentDateTime()));
    connect(dialog, &QFileDialog::fileSelected, this, [this, session](const QString& path) { writeTo(path, session); });
    dialog->open();
}

void EditorController::writeTo(const QString& path, const AnnotationSession& session)
{
    m_saveFolder = QFileInfo(path).path();
    const bool isReplacing = QFile::exists(path); // then the dialog asked
    const auto write = [path, session, isReplacing] {
        const auto png = PictureTranscoder::toPNG(flattened(session));
        return png && ResultFile::write(*png, path, isReplacing);
    };
    const auto tell = [this](bool isWritten) {
        using ClipboardCore::ToastText;
        m_services.toast(isWritten ? ToastText(tr("Saved image")) : ToastText::failure(tr("Couldn't save image")));
    };
    runOffMainThread(m_pool, this, write, tell);
}

void EditorController::closeWindow()
{
    if (!m_window)
        return;
    m_window->hide();
    m_window.release()->deleteLater(); // one of its events may be at work
}

/// A window manager that sees the window in front go hands the keyboard to the application behind it, and the panel
/// would close again. So the window stays until the panel has taken the keyboard from it.
void EditorController::closeWindowBehindPanel()
{
    if (!isInFront())
        return closeWindow();
    m_leavingWindow = std::move(m_window);
    m_leavingWindow->disconnect(this);
    m_leavingWindow->leave();
    const auto close = [this] {
        if (EditorWindow* window = m_leavingWindow.release()) {
            window->hide();
            window->deleteLater();
        }
    };
    connect(m_leavingWindow->windowHandle(), &QWindow::activeChanged, this, close);
    QTimer::singleShot(handOver, m_leavingWindow.get(), close);
}

// ── Outcomes

void EditorController::carryOut(const EditorOutcomes::Flatten& outcome)
{
    const auto write = [session = *m_lifecycle.session(), dir = m_imagesDir] {
        return ImageBlobs::write(flattened(session), dir);
    };
    const auto answer = [this, generation = outcome.generation](const std::optional<QString>& path) {
        handle(EditorEvents::Flattened{path, generation});
    };
    runOffMainThread(m_pool, this, write, answer);
}

void EditorController::carryOut(const EditorOutcomes::Commit& outcome)
{
    if (outcome.exit == EditorExit::save) {
        if (QFile::exists(outcome.path))
            commitToHistory(outcome);
        else
            handle(EditorEvents::CommitFailed{outcome.generation});
        return;
    }
    const auto read = [path = outcome.path] { return ClipboardCore::StoredFile::readAll(path); };
    runOffMainThread(m_pool, this, read, [this, outcome](const std::optional<QByteArray>& png) {
        if (!png)
            return handle(EditorEvents::CommitFailed{outcome.generation});
        writePNG(*png);
        commitToHistory(outcome);
    });
}

void EditorController::commitToHistory(const EditorOutcomes::Commit& commit)
{
    const auto id = addResult(commit.path, commit.original);
    handle(EditorEvents::Committed{id, commit.original.snippet(), commit.generation});
}

void EditorController::carryOut(const EditorOutcomes::Paste& outcome)
{
    m_services.pasteService.pasteAfterClose(outcome.snippet);
}

void EditorController::carryOut(const EditorOutcomes::Toast& outcome)
{
    m_services.toast(outcome.text);
}

void EditorController::carryOut(const EditorOutcomes::Close& outcome)
{
    // The panel first: as long as a window of ours has the keyboard, the application that was in front stays
    // remembered.
    onClose(outcome.selecting);
    closeWindowBehindPanel();
}

void EditorController::carryOut(const EditorOutcomes::Dismiss& /*outcome*/)
{
    closeWindow();
    m_services.windows.restoreFrontWindow();
}

void EditorController::carryOut(const EditorOutcomes::Quit& /*outcome*/)
{
    closeWindow();
    onQuit();
}

} // namespace Clipboard
