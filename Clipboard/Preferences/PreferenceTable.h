#pragma once

#include <QAnyStringView>
#include <QLatin1String>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Clipboard {

/// The names under which the preferences are kept.
namespace PreferenceKey {
inline constexpr QLatin1String hotKey("hotKey");
inline constexpr QLatin1String selectAtOpening("selectAtOpening");
inline constexpr QLatin1String startAtLogin("startAtLogin");
inline constexpr QLatin1String historyEntries("historyEntries");
inline constexpr QLatin1String historyDays("historyDays");
inline constexpr QLatin1String forgetOnExit("forgetOnExit");
inline constexpr QLatin1String forgetCleared("forgetCleared");
inline constexpr QLatin1String encryptHistory("encryptHistory");
inline constexpr QLatin1String recordedTypes("recordedTypes");
inline constexpr QLatin1String neverApplications("neverApplications");
inline constexpr QLatin1String neverPatterns("neverPatterns");
inline constexpr QLatin1String editorColor("editorColor");
inline constexpr QLatin1String editorSize("editorSize");
} // namespace PreferenceKey

/// One thing that the user can choose. Every value is a list of words, of which most kinds have exactly one.
struct Preference
{
    enum class Kind {
        flag,     // "true" or "false"
        number,   // from least to most
        choice,   // one of `choices`
        words,    // any of `choices`
        names,    // any words, at most `most`
        patterns, // regular expressions, at most `most`
        chord,    // a key with its modifiers
    };

    /// How it is shown, in English; the window translates it in the context "Preference".
    struct Texts
    {
        const char* section = ""; // empty: it is not in the window
        const char* label = "";
        const char* help = "";
        QList<const char*> choices{};
    };

    QLatin1String key;
    Kind kind;
    QStringList initially;
    Texts texts;
    QStringList choices{};
    int least = 0;
    int most = 0;

    /// Why it cannot have that value, in English for whoever wrote it; nothing when it can.
    [[nodiscard]] std::optional<QString> whatIsWrong(const QStringList& values) const;
    /// The value as it is kept: a chord in its usual order, choices in theirs, nothing twice.
    [[nodiscard]] QStringList normalized(const QStringList& values) const;
    /// Whether it has one value and not a list of them.
    [[nodiscard]] bool isSingle() const;
};

/// All of them, in the order in which they are shown.
[[nodiscard]] const QList<Preference>& preferenceTable();
/// Null when there is none of that name.
[[nodiscard]] const Preference* findPreference(QAnyStringView key);

} // namespace Clipboard
