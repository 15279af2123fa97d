#pragma once

#include "BusService.h"
#include "DialogCard.h"
#include "EditorController.h"
#include "FloatingPanel.h"
#include "GlobalHotKey.h"
#include "History/JSONHistoryStore.h"
#include "HistoryEncryption.h"
#include "HistoryLimits.h"
#include "HistoryViewModel.h"
#include "IconCache.h"
#include "PasteService.h"
#include "PasteboardWatcher.h"
#include "PauseTimer.h"
#include "PlatformLoader.h"
#include "Preferences.h"
#include "PreferencesWindow.h"
#include "ServiceNotices.h"
#include "SmartActionRunner.h"
#include "StatusItem.h"
#include "Thumbs.h"
#include "ToastPresenter.h"

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QUuid>

#include <memory>
#include <optional>

namespace Clipboard {

/// The composition root: makes every long-lived object, in this order, and connects them; places and shows the panel.
/// Main thread only.
class StatusItemController final : public QObject
{
    Q_OBJECT
public:
    /// `dataFolder` holds the history and the pictures.
    StatusItemController(Platform platform, const QString& dataFolder, QObject* parent = nullptr);
    ~StatusItemController() override;

    /// Makes the program known on the session bus, once the event loop runs.
    void announce();
    /// Opens the panel with that entry selected, or else the first.
    void show(std::optional<QUuid> selecting = std::nullopt);
    /// Closes an open panel, opens a closed one.
    void togglePanel();
    /// Asks, and on consent removes every entry that is not pinned.
    void clearHistory();
    void showAbout();
    void showPreferences();
    /// Writes the history where its file is gone.
    void keepHistory();
    /// Stores the copies made so far and what is being annotated, and writes the history.
    void flush();
    /// The end of the program: the same, and then the clipboard's content is left with the session.
    void terminate();

private:
    void open(std::optional<QUuid> selecting, std::optional<qsizetype> workScreen);
    void placePanel(std::optional<qsizetype> workScreen);
    void connectNotices();
    void connectHistory();
    void tellOfUnreadableHistory();
    void takeOpenedHistory(const QList<ClipboardCore::ClipItem>& evicted);
    void connectPanel();
    void connectEditor();
    void connectStatusItem();
    void connectPreferences();
    void applyPreferences();
    void bindHotKey();
    void forgetOnExit();
    void welcome();
    [[nodiscard]] QList<PreferencesWindow::Application> seenApplications() const;
    void aim();
    void connectPause();
    [[nodiscard]] QVariantMap status(const QString& workerProblem) const;
    void togglePause();
    void annotate(const ClipboardCore::ClipItem& item, const QImage& picture);
    void saveCopies();
    void present(std::unique_ptr<DialogCard> dialog);

    Platform m_platform;
    Preferences m_preferences;
    QString m_historyFile;
    QString m_imagesDir;
    IconCache m_icons;
    Thumbs m_thumbs;
    ServiceNotices m_notices;
    ToastPresenter m_toasts;
    PasteService m_pasteService;
    ClipboardCore::JSONHistoryStore m_store;
    SmartActionRunner m_smartActions;
    HistoryViewModel m_viewModel;
    HistoryLimits m_limits;
    HistoryEncryption m_encryption;
    PasteboardWatcher m_watcher;
    PauseTimer m_pause;
    StatusItem m_statusItem;
    FloatingPanel m_panel;
    EditorController m_editor;
    bool m_isEditorBehindPanel = false;
    std::unique_ptr<GlobalHotKey> m_hotKey;
    std::optional<ClipboardCore::KeyChord> m_chord; // that it is bound to
    std::unique_ptr<DialogCard> m_dialog;
    std::unique_ptr<PreferencesWindow> m_preferencesWindow;
    Bus::BusService m_bus;
    QThreadPool m_housekeeping;
};

} // namespace Clipboard
