#pragma once

#include "PreferenceTable.h"

#include <QList>
#include <QWidget>

#include <functional>

class QVBoxLayout;

namespace Clipboard {

class FormButton;
class FormField;
class Preferences;

/// Everything that the user can choose, made from the table of preferences. What is chosen holds at once.
class PreferencesWindow final : public QWidget
{
    Q_OBJECT
public:
    struct Application
    {
        QString id;
        QString name;
    };
    struct Services
    {
        Preferences& preferences;
        /// Those that something was copied from.
        std::function<QList<Application>()> seenApplications;
        /// The text on the pasteboard, at once.
        std::function<QString()> copiedText;
        /// Whether recording pauses, and until when, as a sentence; empty while it does not.
        std::function<QString()> pause;
        std::function<void()> togglePause;
    };
    explicit PreferencesWindow(Services services);
    ~PreferencesWindow() override;

    /// Takes over what was chosen elsewhere.
    void sync();

signals:
    /// Why a value was not taken, for the user.
    void refused(const QString& reason);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void addRow(const Preference& preference, QVBoxLayout* form);
    void addPauseRow(QVBoxLayout* form);
    [[nodiscard]] QWidget* controlOf(const Preference& preference, QWidget* row);
    [[nodiscard]] QWidget* switchOf(const Preference& preference, QWidget* row);
    [[nodiscard]] QWidget* chipsOf(const Preference& preference, QWidget* row);
    [[nodiscard]] QWidget* fieldOf(const Preference& preference, QWidget* row);
    [[nodiscard]] QWidget* chordOf(const Preference& preference, QWidget* row);
    [[nodiscard]] QWidget* listOf(const Preference& preference, QWidget* row);
    void addWordSource(const Preference& preference, QVBoxLayout* column);
    void openSeenApplications(FormButton* button);
    void chooseChip(const Preference& preference, const QString& choice, bool isOn);
    bool choose(const Preference& preference, const QStringList& values);
    [[nodiscard]] FormField* patternField(const Preference& preference, QWidget* parent);
    bool addWord(const Preference& preference, const QString& word);
    [[nodiscard]] QStringList shownWords(const Preference& preference) const;
    /// What brings a control in line with its preference.
    void whenSynced(std::function<void()> sync) { m_syncs.append(std::move(sync)); }

    Services m_services;
    QList<std::function<void()>> m_syncs;
};

} // namespace Clipboard
