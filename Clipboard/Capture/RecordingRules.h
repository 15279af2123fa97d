#pragma once

#include "History/ClipType.h"

#include <QList>
#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace Clipboard {

/// What the user does not want recorded, beyond what programs mark. A value; without any rule everything is recorded.
class RecordingRules final
{
public:
    RecordingRules() = default;
    /// `types` are those that are recorded, `applications` and `patterns` what is not.
    RecordingRules(const QStringList& types, const QStringList& applications, const QStringList& patterns);

    [[nodiscard]] bool allows(ClipboardCore::ClipType type) const { return !m_refusedTypes.contains(type); }
    /// An application that is not known is nobody's.
    [[nodiscard]] bool allowsFrom(const std::optional<QString>& application) const;
    [[nodiscard]] bool hasPatterns() const { return !m_patterns.isEmpty(); }
    /// Whether one of the patterns is in the text, or cannot be ruled out: a text is searched up to a length, and each
    /// pattern up to a number of steps, beyond which what should stay secret is taken to be in it. To be asked off the
    /// main thread.
    [[nodiscard]] bool matches(const QString& text) const;

private:
    QSet<ClipboardCore::ClipType> m_refusedTypes;
    QSet<QString> m_applications; // case-folded
    QList<QRegularExpression> m_patterns;
};

} // namespace Clipboard
