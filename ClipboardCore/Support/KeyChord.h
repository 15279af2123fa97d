#pragma once

#include <QString>

#include <optional>

namespace ClipboardCore {

/// A key and the modifiers that are held with it, as a person writes them: "Super+Shift+V", "Ctrl+Alt+Space", "F9".
struct KeyChord
{
    bool super = false;
    bool control = false;
    bool alt = false;
    bool shift = false;
    /// A Latin letter in upper case, a digit, F1 to F24, or one of KeyChord::namedKeys().
    QString key;

    /// The keys that have a name: "Space", "Home" and their like.
    [[nodiscard]] static const QStringList& namedKeys();
    /// Modifiers in any order and case, the key last. Nothing when it is no chord, or one that a person would press
    /// while writing: a key that types needs more than Shift.
    [[nodiscard]] static std::optional<KeyChord> fromText(QStringView text);
    /// Always in the same order; fromText() reads it.
    [[nodiscard]] QString text() const;

    friend bool operator==(const KeyChord&, const KeyChord&) = default;
};

} // namespace ClipboardCore
