#include "StatusItemController.h"

#include "ImageBlobs.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

/// The part of the composition root that has to do with what the user can choose.
namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::ToastText;

namespace {

// Password managers clear what they copied after 10 to 45 s.
constexpr std::chrono::seconds clearedWithin{60};

} // namespace

void StatusItemController::connectPreferences()
{
    m_hotKey = std::make_unique<GlobalHotKey>(*m_platform.hotKey, [this] { togglePanel(); });
    connect(m_hotKey.get(), &GlobalHotKey::changed, this, [this] {
        const QString& problem = m_hotKey->problem();
        m_statusItem.setHotKey(problem.isEmpty() ? m_hotKey->shown() : QString());
        if (problem.isEmpty())
            return m_notices.clear(u"hot-key"_s);
        if (problem == m_notices.textOf(u"hot-key"_s))
            return;
        qWarning("%s", qPrintable(problem));
        m_notices.raise(u"hot-key"_s, problem);
        m_toasts.show(ToastText::failure(problem));
    });
    connect(&m_preferences, &Preferences::changed, this, &StatusItemController::applyPreferences);
    m_encryption.start();
    applyPreferences();
    // What others write is heard of once the copies are watched.
    QTimer::singleShot(0, &m_preferences, &Preferences::follow);
}

void StatusItemController::applyPreferences()
{
    using namespace PreferenceKey;
    m_limits.set(m_preferences.number(historyEntries), m_preferences.number(historyDays));
    m_watcher.setRules({m_preferences.values(recordedTypes), m_preferences.values(neverApplications),
                        m_preferences.values(neverPatterns)});
    m_watcher.setForgetting(m_preferences.flag(forgetCleared) ? std::optional(clearedWithin) : std::nullopt);
    m_viewModel.selectsNewest = m_preferences.value(selectAtOpening) == "newest"_L1;
    m_encryption.follow();
    bindHotKey();
}

void StatusItemController::bindHotKey()
{
    const auto chord = ClipboardCore::KeyChord::fromText(m_preferences.value(PreferenceKey::hotKey));
    if (chord && std::exchange(m_chord, chord) != chord)
        m_hotKey->bind(*chord);
}

void StatusItemController::forgetOnExit()
{
    if (!m_preferences.flag(PreferenceKey::forgetOnExit))
        return;
    ImageBlobs::release(m_store.removeAll(true));
    m_store.saveAsync();
    m_store.flush();
}

void StatusItemController::showPreferences()
{
    m_panel.dismiss();
    if (!m_preferencesWindow) {
        m_preferencesWindow = std::make_unique<PreferencesWindow>(PreferencesWindow::Services{
            m_preferences, [this] { return seenApplications(); }, [this] { return m_viewModel.copiedText(); },
            [this] { return m_notices.textOf(u"paused"_s); }, [this] { togglePause(); }});
        connect(m_preferencesWindow.get(), &PreferencesWindow::refused, this,
                [this](const QString& reason) { m_toasts.show(ToastText::failure(reason)); });
    }
    m_preferences.reread();
    m_preferencesWindow->sync();
    m_preferencesWindow->show();
    m_platform.windows->activate(m_preferencesWindow->windowHandle());
}

QList<PreferencesWindow::Application> StatusItemController::seenApplications() const
{
    QList<PreferencesWindow::Application> seen;
    for (const ClipboardCore::ClipItem& item : m_viewModel.items()) {
        const QString id = item.bundleID.value_or(QString());
        const auto isSame = [&id](const auto& application) { return application.id == id; };
        if (!id.isEmpty() && std::ranges::none_of(seen, isSame))
            seen.append({id, item.sourceApp.value_or(id)});
    }
    return seen;
}

void StatusItemController::welcome()
{
    if (!m_viewModel.items().isEmpty() || m_panel.isVisible() || !m_preferences.once(u"welcomed"_s))
        return;
    const QString& problem = m_hotKey->problem();
    m_viewModel.welcome =
        (problem.isEmpty() ? tr("%1 opens this window from everywhere.").arg(m_hotKey->shown()) : problem) + u'\n' +
        tr("What programs mark as secret, such as passwords, is never recorded.");
    connect(&m_panel, &FloatingPanel::closed, &m_viewModel, [this] { m_viewModel.welcome.clear(); });
    show();
}

void StatusItemController::togglePause()
{
    if (m_pause.isPaused())
        m_pause.resume();
    else
        m_pause.pause(std::nullopt);
}

} // namespace Clipboard
