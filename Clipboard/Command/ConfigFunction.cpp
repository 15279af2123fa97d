#include "Annotation/AnnotationColor.h"
#include "Annotation/AnnotationSize.h"
#include "Functions.h"
#include "Terminal.h"

#include <QSettings>

#include <algorithm>

/// The preferences, which are kept in the user defaults: the program need not run.
namespace Clipboard::Command::Functions {

using namespace Qt::StringLiterals;

namespace {

struct Preference
{
    QString key;
    QStringList values; // that it can have
    QString initially;
};

QList<Preference> preferences()
{
    QStringList colors;
    for (const ClipboardCore::AnnotationColor& color : ClipboardCore::AnnotationPalette::colors)
        colors.append(color.id);
    QStringList sizes;
    for (const ClipboardCore::AnnotationSize size : ClipboardCore::allAnnotationSizes)
        sizes.append(rawValue(size));
    return {{u"editorColor"_s, colors, QString(ClipboardCore::AnnotationPalette::red.id)},
            {u"editorSize"_s, sizes, QString(rawValue(ClipboardCore::AnnotationSize::medium))}};
}

/// What was written by hand, or by another version, counts as nothing.
QString valueOf(const Preference& preference)
{
    const QString value = QSettings().value(preference.key).toString();
    return preference.values.contains(value) ? value : preference.initially;
}

Outcome set(const Preference& preference, const QString& value)
{
    if (!preference.values.contains(value))
        return Failure{ExitCode::usage, u"'%1' can be %2"_s.arg(preference.key, preference.values.join(u", "_s))};
    QSettings settings;
    settings.setValue(preference.key, value);
    settings.sync();
    if (settings.status() != QSettings::NoError)
        return Failure{ExitCode::failed, u"'%1' cannot be written"_s.arg(settings.fileName())};
    return std::nullopt;
}

Outcome listAll()
{
    const QList<Preference> all = preferences();
    for (const Preference& preference : all) {
        if (!Terminal::printLine(preference.key + u'\t' + valueOf(preference)))
            return cannotWrite();
    }
    return std::nullopt;
}

} // namespace

Outcome config(const CommandLine& line, const BusClient& /*client*/)
{
    const QStringList& words = line.operands;
    const QString verb = words.value(0, u"list"_s);
    if (verb == "list"_L1 && words.size() <= 1)
        return listAll();
    if (!(verb == "get"_L1 && words.size() == 2) && !(verb == "set"_L1 && words.size() == 3))
        return Failure{ExitCode::usage, u"write 'config list', 'config get KEY' or 'config set KEY VALUE'"_s};
    const QList<Preference> all = preferences();
    const auto preference = std::ranges::find(all, words.at(1), &Preference::key);
    if (preference == all.cend())
        return Failure{ExitCode::usage, u"there is no preference '%1'; 'config' lists them"_s.arg(words.at(1))};
    if (verb == "set"_L1)
        return set(*preference, words.at(2));
    return Terminal::printLine(valueOf(*preference)) ? Outcome() : Outcome(cannotWrite());
}

} // namespace Clipboard::Command::Functions
