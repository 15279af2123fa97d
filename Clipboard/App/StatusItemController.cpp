#include "StatusItemController.h"

#include "AboutDialog.h"
#include "ClearHistoryDialog.h"
#include "ImageBlobs.h"
#include "PanelPlacement.h"
#include "QRCode.h"
#include "SessionStatus.h"
#include "Support/PrivateFolder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::ToastText;

namespace {

constexpr double saveDelaySeconds = 1.0;
constexpr std::chrono::milliseconds showAfterLaunch{400};
// The first showing then costs what the others do; at the start itself there is more urgent work.
constexpr std::chrono::milliseconds prepareAfterLaunch{1000};

// What was just copied is read within milliseconds. A large content that keeps coming is waited for so long; a program
// that hangs is given up sooner by the reading itself.
constexpr std::chrono::milliseconds lastReadLimit{10000};
// A large screenshot is converted in a fraction of this. Beyond it whoever quits, or a session that ends, has waited
// long enough for a picture to become small.
constexpr std::chrono::milliseconds lastConversionLimit{500};
// An annotated picture is encoded in a fraction of this.
constexpr std::chrono::milliseconds resultLimit{2000};

// A program that copies from a terminal goes on in the background, and may reach the display a little later than its
// user reaches us.
constexpr std::chrono::milliseconds lateCopyGrace{200};

constexpr const char* showPanelVariable = "CLIPBOARD_SHOW_PANEL";

/// The time of day, and the day when it is another one.
QString timeText(const QDateTime& time)
{
    const QDateTime local = time.toLocalTime();
    return local.date() == QDate::currentDate() ? QLocale().toString(local.time(), QLocale::ShortFormat)
                                                : QLocale().toString(local, QLocale::ShortFormat);
}

QList<PanelPlacement::Screen> currentScreens()
{
    QList<PanelPlacement::Screen> screens;
    const QList<QScreen*> all = QGuiApplication::screens(); // the primary one first
    for (const QScreen* screen : all)
        screens.append({screen->geometry(), screen->availableGeometry()});
    return screens;
}

/// Among currentScreens(); nothing for none.
std::optional<qsizetype> indexOf(QScreen* screen)
{
    const qsizetype index = QGuiApplication::screens().indexOf(screen);
    return index < 0 ? std::nullopt : std::optional(index);
}

} // namespace

StatusItemController::StatusItemController(Platform platform, const QString& dataFolder, QObject* parent)
    : QObject(parent)
    , m_platform(std::move(platform))
    , m_historyFile(dataFolder + u"/history.json"_s)
    , m_imagesDir(dataFolder + u"/images"_s)
    , m_icons(*m_platform.workspace)
    , m_toasts(*m_platform.windows)
    , m_pasteService(*m_platform.keystrokes, [this](const ToastText& text) { m_toasts.show(text); })
    , m_store(m_historyFile, m_preferences.number(PreferenceKey::historyEntries), saveDelaySeconds)
    , m_smartActions({*m_platform.pasteboard, *m_platform.workspace, *m_platform.textRecognizer,
                      *m_platform.linkMetadata, [this](const ToastText& text) { m_toasts.show(text); }, &QRCode::image})
    , m_viewModel(m_store,
                  {*m_platform.pasteboard, m_pasteService, [this](const ToastText& text) { m_toasts.show(text); },
                   &ClipboardCore::SmartActions::actions,
                   [this](const ClipboardCore::SmartActionEffect& effect, HistoryViewModel& viewModel) {
                       m_smartActions.perform(effect, viewModel);
                   },
                   [this](const QString& text) { m_toasts.showUntilNext(text); }})
    , m_limits(m_store, m_preferences.number(PreferenceKey::historyEntries),
               [this](const QList<ClipboardCore::ClipItem>& evicted) {
                   ImageBlobs::release(evicted);
                   m_store.saveAsync();
                   m_viewModel.refresh();
               })
    , m_encryption({m_store, m_imagesDir, m_preferences, m_notices,
                    [this](const QList<ClipboardCore::ClipItem>& evicted) { takeOpenedHistory(evicted); },
                    [this](const QString& problem) {
                        m_notices.tell(u"encryption-refused"_s, problem);
                        m_toasts.show(ToastText::failure(problem));
                    }})
    , m_watcher(*m_platform.pasteboard, *m_platform.workspace, m_store, m_imagesDir)
    , m_statusItem(LoginItem(), m_platform.windows->isCompositing(), this)
    , m_panel({m_viewModel, *m_platform.windows, *m_platform.workspace, m_thumbs,
               [this] { return m_statusItem.menuActions(); }})
    , m_editor(m_imagesDir,
               {*m_platform.windows, m_pasteService, [this](const ToastText& text) { m_toasts.show(text); },
                [this] { return m_viewModel.copiedText(); }})
    , m_bus({m_store, m_viewModel, m_imagesDir, [this] { togglePanel(); }, [this] { show(); },
             [this] { m_panel.dismiss(); }, [this] { aim(); }, [this] { m_editor.quit(); }, m_pause,
             [this](auto done) {
                 m_platform.workerCheck->check(
                     [this, done = std::move(done)](const QString& problem) { done(status(problem)); });
             },
             [this] { showPreferences(); }})
{
    m_housekeeping.setMaxThreadCount(1);
    m_housekeeping.start([dataFolder] { ClipboardCore::makeContentPrivate(dataFolder); });
    if (m_store.namesAllPictures())
        ImageBlobs::sweepOrphans(m_imagesDir, m_store.items(), m_housekeeping);
    connectNotices();
    connectHistory();
    m_watcher.start();
    connectPanel();
    connectEditor();
    connectStatusItem();
    connectPause();
    connectPreferences();
    if (qEnvironmentVariableIsSet(showPanelVariable))
        QTimer::singleShot(showAfterLaunch, this, [this] { show(); });
    else if (!QFileInfo::exists(m_historyFile))
        QTimer::singleShot(showAfterLaunch, this, &StatusItemController::welcome);
}

StatusItemController::~StatusItemController()
{
    m_housekeeping.waitForDone();
}

void StatusItemController::connectNotices()
{
    connect(&m_notices, &ServiceNotices::changed, this, [this] {
        m_statusItem.setNotices(m_notices.texts());
        m_viewModel.setNotice(m_notices.text());
    });
    connect(&m_statusItem, &StatusItem::noticeChosen, this,
            [this](const QString& text) { m_toasts.show(ToastText::failure(text)); });
    connect(&m_panel, &FloatingPanel::closed, &m_notices, &ServiceNotices::markSeen);
    const auto tellOfClipboard = [this] {
        const QString reason = m_platform.pasteboard->unavailableReason();
        if (reason.isEmpty())
            m_notices.clear(u"clipboard"_s);
        else
            m_notices.raise(u"clipboard"_s, reason);
    };
    connect(m_platform.pasteboard.get(), &Pasteboard::availabilityChanged, this, tellOfClipboard);
    tellOfClipboard();
}

void StatusItemController::connectHistory()
{
    tellOfUnreadableHistory();
    m_store.onSaveFailureChanged([this](const std::optional<QString>& failure) {
        const QString id = u"save"_s;
        if (failure)
            m_notices.raise(id, tr("The history cannot be saved: %1").arg(*failure));
        else
            m_notices.clear(id);
    });
    m_watcher.onChange = [this] { m_viewModel.refresh(); };
    m_watcher.onPicturesWaiting = [this](bool areWaiting) {
        const QString id = u"save-picture"_s;
        if (areWaiting)
            m_notices.raise(id, tr("A copied picture cannot be saved yet; Tessaly tries again until it can."));
        else
            m_notices.clear(id);
    };
    m_watcher.onPicture = [this](const QString& path) { m_thumbs.prepare(path); };
    m_viewModel.markOwnChange = [this] { m_watcher.markOwnChange(); };
    m_viewModel.onRequestClose = [this] { m_panel.dismiss(); };
    m_viewModel.onPreferences = [this] { showPreferences(); };
}

void StatusItemController::tellOfUnreadableHistory()
{
    if (const auto kept = m_store.unreadableFile())
        m_notices.tell(u"unreadable-history"_s,
                       tr("The history could not be read; it is kept as %1.").arg(QFileInfo(*kept).fileName()));
}

/// A history that was locked.
void StatusItemController::takeOpenedHistory(const QList<ClipboardCore::ClipItem>& evicted)
{
    tellOfUnreadableHistory();
    ImageBlobs::release(evicted);
    m_viewModel.refresh();
    if (m_store.namesAllPictures())
        ImageBlobs::sweepOrphans(m_imagesDir, m_store.items(), m_housekeeping);
}

void StatusItemController::connectPanel()
{
    connect(&m_panel, &FloatingPanel::closed, &m_viewModel, &HistoryViewModel::forgetRemoved);
    connect(m_platform.windows.get(), &WindowSystem::panelScreenChosen, this,
            [this](QScreen* screen) { placePanel(indexOf(screen)); });
    connect(&m_panel, &FloatingPanel::willClose, &m_statusItem, [this] { m_statusItem.setHighlighted(false); });
    QTimer::singleShot(prepareAfterLaunch, &m_panel, &FloatingPanel::prepare);
}

void StatusItemController::connectEditor()
{
    m_viewModel.onAnnotate = [this](const ClipboardCore::ClipItem& item, const QImage& picture) {
        annotate(item, picture);
    };
    m_editor.addResult = [this](const QString& path, const ClipboardCore::ClipItem& from) {
        return m_viewModel.addAnnotateResult(path, from);
    };
    m_editor.writePNG = [this](const QByteArray& png) {
        m_platform.pasteboard->setPNG(png);
        m_watcher.markOwnChange();
    };
    m_editor.onClose = [this](std::optional<QUuid> selecting) { show(selecting); };
    m_editor.onQuit = [] { QCoreApplication::exit(); };
    connect(&m_panel, &FloatingPanel::closed, &m_editor, [this] {
        // The panel gives the keyboard back to the application behind it. The editor is a place to work in, too.
        if (std::exchange(m_isEditorBehindPanel, false))
            m_editor.bringToFront();
    });
}

void StatusItemController::connectStatusItem()
{
    connect(&m_statusItem, &StatusItem::clicked, this, [this] {
        if (m_panel.isVisible())
            m_panel.dismiss();
        else
            open({}, {}); // by the item that was clicked, wherever the user works otherwise
    });
    connect(&m_statusItem, &StatusItem::menuWillShow, &m_panel, &FloatingPanel::dismiss);
    connect(&m_statusItem, &StatusItem::showHistoryChosen, this, [this] { show(); });
    connect(&m_statusItem, &StatusItem::pauseChosen, this, &StatusItemController::togglePause);
    connect(&m_statusItem, &StatusItem::preferencesChosen, this, &StatusItemController::showPreferences);
    connect(&m_statusItem, &StatusItem::clearHistoryChosen, this, &StatusItemController::clearHistory);
    connect(&m_statusItem, &StatusItem::aboutChosen, this, &StatusItemController::showAbout);
    connect(&m_statusItem, &StatusItem::quitChosen, &m_editor, &EditorController::quit);
    // Talking to the tray takes its time; copies are watched by then.
    QTimer::singleShot(0, &m_statusItem, &StatusItem::show);
}

void StatusItemController::connectPause()
{
    connect(&m_pause, &PauseTimer::changed, this, [this] {
        const QString id = u"paused"_s;
        m_watcher.setPaused(m_pause.isPaused());
        m_statusItem.setPaused(m_pause.isPaused());
        if (const auto end = m_pause.end())
            m_notices.raise(id, tr("Recording is paused until %1.").arg(timeText(*end)));
        else if (m_pause.isPaused())
            m_notices.raise(id, tr("Recording is paused."));
        else
            m_notices.clear(id);
        if (m_preferencesWindow)
            m_preferencesWindow->sync();
    });
}

QVariantMap StatusItemController::status(const QString& workerProblem) const
{
    const QList<ClipboardCore::ClipItem>& items = m_viewModel.items();
    QVariantMap skipped;
    for (const auto& [reason, count] : m_watcher.skipped().asKeyValueRange())
        skipped.insert(reason, count);
    return {{u"version"_s, QCoreApplication::applicationVersion()},
            {u"entries"_s, static_cast<int>(items.size())},
            {u"pinned"_s, static_cast<int>(std::ranges::count_if(items, &ClipboardCore::ClipItem::isPinned))},
            {u"paused"_s, m_pause.isPaused()},
            {u"resumesAt"_s, m_pause.end() ? m_pause.end()->toString(Qt::ISODate) : QString()},
            {u"encrypted"_s, m_encryption.isOn()},
            {u"skipped"_s, skipped},
            {u"services"_s, SessionStatus::services(m_platform, m_notices, workerProblem)}};
}

void StatusItemController::announce()
{
    QTimer::singleShot(0, &m_bus, &Bus::BusService::announce);
}

void StatusItemController::aim()
{
    if (!m_panel.isVisible()) // an open one remembers what was in front of it
        m_platform.windows->rememberFrontWindow();
}

void StatusItemController::show(std::optional<QUuid> selecting)
{
    open(selecting, indexOf(m_platform.windows->workScreen()));
}

void StatusItemController::open(std::optional<QUuid> selecting, std::optional<qsizetype> workScreen)
{
    m_panel.dismiss(); // an open one opens afresh, and remembers the application behind it
    placePanel(workScreen);
    m_isEditorBehindPanel = m_editor.isInFront();
    m_limits.enforceDays();
    m_viewModel.panelWillShow(selecting);
    m_panel.open();
    // After the panel's first picture: the tray may be slow to answer.
    QTimer::singleShot(0, &m_statusItem, [this] { m_statusItem.setHighlighted(m_panel.isVisible()); });
}

void StatusItemController::placePanel(std::optional<qsizetype> workScreen)
{
    m_panel.setPanelGeometry(PanelPlacement::panelRect(
        {m_statusItem.geometry(), m_platform.windows->pointer(), workScreen}, currentScreens()));
}

void StatusItemController::togglePanel()
{
    if (m_panel.isVisible())
        m_panel.dismiss();
    else
        show();
}

void StatusItemController::annotate(const ClipboardCore::ClipItem& item, const QImage& picture)
{
    QScreen* screen = QGuiApplication::screenAt(m_panel.panelGeometry().center());
    m_panel.dismiss();
    m_editor.open(picture, screen, EditorController::rememberedColor(), EditorController::rememberedSize(), item);
}

void StatusItemController::keepHistory()
{
    if (!m_store.items().isEmpty() && !QFileInfo::exists(m_historyFile))
        m_store.saveAsync();
}

void StatusItemController::flush()
{
    m_editor.keepChanges(resultLimit);
    saveCopies();
}

void StatusItemController::saveCopies()
{
    m_watcher.finishPending({lastReadLimit, lastConversionLimit});
    m_viewModel.forgetRemoved();
    m_store.flush();
}

void StatusItemController::terminate()
{
    // Nobody looks any more; the display may even be gone.
    m_platform.pasteboard->disconnect(this);
    m_watcher.onPicture = {};
    flush();
    QThread::msleep(lateCopyGrace.count());
    saveCopies();
    forgetOnExit();
    m_platform.pasteboard->leave();
}

void StatusItemController::clearHistory()
{
    auto dialog = std::make_unique<ClearHistoryDialog>(m_platform.windows->isCompositing());
    connect(dialog.get(), &QDialog::accepted, &m_viewModel, &HistoryViewModel::clearHistory);
    present(std::move(dialog));
}

void StatusItemController::showAbout()
{
    present(std::make_unique<AboutDialog>(m_platform.windows->isCompositing(),
                                          m_hotKey->problem().isEmpty() ? m_hotKey->shown() : QString()));
}

void StatusItemController::present(std::unique_ptr<DialogCard> dialog)
{
    m_panel.dismiss(); // it would keep the keyboard where a window cannot take it from another
    // One at a time; an older one that is still open goes.
    m_dialog = std::move(dialog);
    connect(m_dialog.get(), &QDialog::finished, this, [this] { m_dialog.release()->deleteLater(); });
    m_dialog->winId(); // makes the native window, for the next lines
    m_platform.windows->prepare(m_dialog->windowHandle(), WindowSystem::Role::dialog);
    m_platform.windows->setShadow(m_dialog->windowHandle(), m_dialog->shadow());
    m_dialog->open();
    m_platform.windows->activate(m_dialog->windowHandle());
}

} // namespace Clipboard
