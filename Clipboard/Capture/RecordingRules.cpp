#include "RecordingRules.h"

#include <algorithm>

namespace Clipboard {

using namespace Qt::StringLiterals;
using ClipboardCore::ClipType;

namespace {

// Secrets are short, and stand near the beginning of what is long, such as the key in a file of keys.
constexpr qsizetype longestSearched = qsizetype{64} * 1024;
// What an ordinary pattern needs for so much text, many times over, and a fraction of a second.
constexpr int mostSteps = 1'000'000;

QRegularExpression bounded(const QString& pattern)
{
    // The limit stands in front of the pattern (pcre2pattern(3), "Setting match resource limits"); one that is in it
    // can only be lower.
    return QRegularExpression(u"(*LIMIT_MATCH=%1)"_s.arg(mostSteps) + pattern,
                              QRegularExpression::UseUnicodePropertiesOption);
}

} // namespace

RecordingRules::RecordingRules(const QStringList& types, const QStringList& applications, const QStringList& patterns)
{
    for (const ClipType type : ClipboardCore::allClipTypes) {
        if (!types.contains(rawValue(type)))
            m_refusedTypes.insert(type);
    }
    for (const QString& application : applications)
        m_applications.insert(application.toCaseFolded());
    for (const QString& pattern : patterns)
        m_patterns.append(bounded(pattern));
}

bool RecordingRules::allowsFrom(const std::optional<QString>& application) const
{
    return !application || !m_applications.contains(application->toCaseFolded());
}

bool RecordingRules::matches(const QString& text) const
{
    const QString searched = text.first(std::min(text.size(), longestSearched));
    return std::ranges::any_of(m_patterns, [&searched](const QRegularExpression& pattern) {
        const QRegularExpressionMatch match = pattern.match(searched);
        return match.hasMatch() || !match.isValid();
    });
}

} // namespace Clipboard
