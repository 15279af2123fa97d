#include "PreferenceTable.h"

#include "Annotation/AnnotationColor.h"
#include "Annotation/AnnotationSize.h"
#include "History/ClipType.h"
#include "Support/KeyChord.h"

#include <QRegularExpression>
#include <QtGlobal>

#include <algorithm>

namespace Clipboard {

using namespace Qt::StringLiterals;
using Kind = Preference::Kind;

namespace {

// The panel shows nine rows; with fewer than that there is no history. The whole file is written again and again, and
// every entry searched at every key.
constexpr int fewestEntries = 10;
constexpr int mostEntries = 10'000;
constexpr int mostDays = 3650;
// Nobody has more to exclude, and every copy is compared with all of them.
constexpr int mostApplications = 200;
constexpr int mostPatterns = 50;
// Beyond any pattern that a person writes.
constexpr qsizetype longestWord = 500;

QStringList typeNames()
{
    QStringList names;
    for (const ClipboardCore::ClipType type : ClipboardCore::allClipTypes)
        names.append(rawValue(type));
    return names;
}

QStringList colorNames()
{
    QStringList names;
    for (const ClipboardCore::AnnotationColor& color : ClipboardCore::AnnotationPalette::colors)
        names.append(color.id);
    return names;
}

QStringList sizeNames()
{
    QStringList names;
    for (const ClipboardCore::AnnotationSize size : ClipboardCore::allAnnotationSizes)
        names.append(rawValue(size));
    return names;
}

// Of each the texts that the window shows.
const Preference::Texts hotKeyTexts{QT_TRANSLATE_NOOP("Preference", "Opening"),
                                    QT_TRANSLATE_NOOP("Preference", "Hot key"),
                                    QT_TRANSLATE_NOOP("Preference", "Opens the panel from everywhere.")};
const Preference::Texts selectTexts{
    QT_TRANSLATE_NOOP("Preference", "Opening"),
    QT_TRANSLATE_NOOP("Preference", "Select"),
    QT_TRANSLATE_NOOP("Preference", "Which entry is selected when the panel opens."),
    {QT_TRANSLATE_NOOP("Preference", "First row"), QT_TRANSLATE_NOOP("Preference", "Newest copy")}};
const Preference::Texts loginTexts{QT_TRANSLATE_NOOP("Preference", "Opening"),
                                   QT_TRANSLATE_NOOP("Preference", "Launch at Login"), ""};
const Preference::Texts entriesTexts{QT_TRANSLATE_NOOP("Preference", "History"),
                                     QT_TRANSLATE_NOOP("Preference", "Entries kept"),
                                     QT_TRANSLATE_NOOP("Preference", "Pinned entries always stay.")};
const Preference::Texts daysTexts{QT_TRANSLATE_NOOP("Preference", "History"),
                                  QT_TRANSLATE_NOOP("Preference", "Days kept"),
                                  QT_TRANSLATE_NOOP("Preference", "Empty for no limit.")};
const Preference::Texts forgetTexts{QT_TRANSLATE_NOOP("Preference", "History"),
                                    QT_TRANSLATE_NOOP("Preference", "Forget at the end"),
                                    QT_TRANSLATE_NOOP("Preference", "Only pinned entries stay when Tessaly ends.")};
const Preference::Texts clearedTexts{QT_TRANSLATE_NOOP("Preference", "History"),
                                     QT_TRANSLATE_NOOP("Preference", "Forget what is cleared"),
                                     QT_TRANSLATE_NOOP("Preference", "Within a minute, as password managers do.")};
const Preference::Texts encryptTexts{
    QT_TRANSLATE_NOOP("Preference", "History"), QT_TRANSLATE_NOOP("Preference", "Encrypt the history"),
    QT_TRANSLATE_NOOP("Preference", "Its files open only with a key in your keyring.")};
const Preference::Texts typesTexts{QT_TRANSLATE_NOOP("Preference", "Recording"),
                                   QT_TRANSLATE_NOOP("Preference", "Record"),
                                   "",
                                   {QT_TRANSLATE_NOOP("Preference", "Text"), QT_TRANSLATE_NOOP("Preference", "Links"),
                                    QT_TRANSLATE_NOOP("Preference", "Images"),
                                    QT_TRANSLATE_NOOP("Preference", "Colors"), QT_TRANSLATE_NOOP("Preference", "Code"),
                                    QT_TRANSLATE_NOOP("Preference", "Files")}};
const Preference::Texts applicationsTexts{
    QT_TRANSLATE_NOOP("Preference", "Recording"), QT_TRANSLATE_NOOP("Preference", "Never from"),
    QT_TRANSLATE_NOOP("Preference", "Applications whose copies are not recorded.")};
const Preference::Texts patternsTexts{
    QT_TRANSLATE_NOOP("Preference", "Recording"), QT_TRANSLATE_NOOP("Preference", "Never matching"),
    QT_TRANSLATE_NOOP("Preference", "Texts with one of these regular expressions in them are not recorded.")};

QList<Preference> makeTable()
{
    using namespace PreferenceKey;
    return {
        {hotKey, Kind::chord, {u"Super+Shift+V"_s}, hotKeyTexts},
        {selectAtOpening, Kind::choice, {u"first"_s}, selectTexts, {u"first"_s, u"newest"_s}},
        {startAtLogin, Kind::flag, {u"false"_s}, loginTexts},
        {historyEntries, Kind::number, {u"500"_s}, entriesTexts, {}, fewestEntries, mostEntries},
        {historyDays, Kind::number, {u"0"_s}, daysTexts, {}, 0, mostDays},
        {forgetOnExit, Kind::flag, {u"false"_s}, forgetTexts},
        {forgetCleared, Kind::flag, {u"false"_s}, clearedTexts},
        {encryptHistory, Kind::flag, {u"false"_s}, encryptTexts},
        {recordedTypes, Kind::words, typeNames(), typesTexts, typeNames()},
        {neverApplications, Kind::names, {}, applicationsTexts, {}, 0, mostApplications},
        {neverPatterns, Kind::patterns, {}, patternsTexts, {}, 0, mostPatterns},
        {editorColor, Kind::choice, {QString(ClipboardCore::AnnotationPalette::red.id)}, {}, colorNames()},
        {editorSize, Kind::choice, {QString(rawValue(ClipboardCore::AnnotationSize::medium))}, {}, sizeNames()},
    };
}

/// What is wrong with one word of a list.
std::optional<QString> whatIsWrongWith(const QString& word, bool isPattern)
{
    if (word.trimmed().isEmpty() || word.size() > longestWord)
        return u"a word has 1 to %1 characters"_s.arg(longestWord);
    const QRegularExpression pattern(isPattern ? word : QString());
    if (!pattern.isValid())
        return u"'%1' is no regular expression: %2"_s.arg(word, pattern.errorString());
    return std::nullopt;
}

std::optional<QString> whatIsWrongWithList(const Preference& preference, const QStringList& values)
{
    if (values.size() > preference.most)
        return u"'%1' holds at most %2"_s.arg(preference.key).arg(preference.most);
    for (const QString& word : values) {
        if (auto wrong = whatIsWrongWith(word, preference.kind == Kind::patterns))
            return wrong;
    }
    return std::nullopt;
}

bool isPossible(const Preference& preference, const QString& value)
{
    bool isNumber = false;
    switch (preference.kind) {
    case Kind::flag:
        return value == "true"_L1 || value == "false"_L1;
    case Kind::number: {
        const int number = value.toInt(&isNumber);
        return isNumber && number >= preference.least && number <= preference.most;
    }
    case Kind::choice:
    case Kind::words:
        return preference.choices.contains(value);
    case Kind::chord:
        return ClipboardCore::KeyChord::fromText(value).has_value();
    case Kind::names:
    case Kind::patterns:
        return true;
    }
    Q_UNREACHABLE();
}

/// What it can be, for a message.
QString possibleValues(const Preference& preference)
{
    switch (preference.kind) {
    case Kind::flag:
        return u"true, false"_s;
    case Kind::number:
        return u"%1 to %2"_s.arg(preference.least).arg(preference.most);
    case Kind::chord:
        return u"a key with Super, Ctrl or Alt, such as Super+Shift+V"_s;
    default:
        return preference.choices.join(u", "_s);
    }
}

} // namespace

bool Preference::isSingle() const
{
    return kind != Kind::words && kind != Kind::names && kind != Kind::patterns;
}

std::optional<QString> Preference::whatIsWrong(const QStringList& values) const
{
    if (kind == Kind::names || kind == Kind::patterns)
        return whatIsWrongWithList(*this, values);
    const auto fits = [this](const QString& value) { return isPossible(*this, value); };
    if ((isSingle() && values.size() != 1) || !std::ranges::all_of(values, fits))
        return u"'%1' can be %2"_s.arg(key, possibleValues(*this));
    return std::nullopt;
}

QStringList Preference::normalized(const QStringList& values) const
{
    if (kind == Kind::chord)
        return {ClipboardCore::KeyChord::fromText(values.constFirst())->text()};
    if (kind == Kind::number)
        return {QString::number(values.constFirst().toInt())};
    QStringList kept = values;
    if (kind == Kind::words) {
        kept = choices;
        kept.removeIf([&values](const QString& choice) { return !values.contains(choice); });
    }
    kept.removeDuplicates();
    return kept;
}

const QList<Preference>& preferenceTable()
{
    static const QList<Preference> table = makeTable();
    return table;
}

const Preference* findPreference(QAnyStringView key)
{
    const auto found = std::ranges::find_if(preferenceTable(), [key](const Preference& one) { return one.key == key; });
    return found == preferenceTable().cend() ? nullptr : &*found;
}

} // namespace Clipboard
