#include "Functions.h"
#include "GnomeShortcut.h"
#include "Preferences.h"
#include "Terminal.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>

/// A key of GNOME, whose settings only its user changes: what is going to be set is shown, and asked for.
namespace Clipboard::Command::Functions {

using namespace Qt::StringLiterals;

namespace {

struct Setting
{
    QString schema;
    QString key;
    QString value; // as GVariant writes it
};

/// The output; nothing when it failed.
std::optional<QString> gsettings(const QStringList& words)
{
    QProcess process;
    process.start(u"gsettings"_s, words);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

/// By its name alone where that finds this program.
QString toggleCommand()
{
    const QString program = QCoreApplication::applicationFilePath();
    const QString found = QStandardPaths::findExecutable(u"tessaly"_s);
    const bool isFound = QFileInfo(found).canonicalFilePath() == QFileInfo(program).canonicalFilePath();
    return (isFound ? u"tessaly"_s : u'"' + program + u'"') + u" toggle"_s;
}

/// The paths in `list`, an array of strings as GVariant writes it, and ours after them.
QString withOurs(const QString& list)
{
    const qsizetype end = list.lastIndexOf(u']');
    const QString others = list.mid(list.indexOf(u'[') + 1).chopped(list.size() - end);
    return u'[' + (others.isEmpty() ? QString() : others + u", "_s) + GnomeShortcut::quoted(GnomeShortcut::path()) +
           u']';
}

bool isAgreed(const QList<Setting>& settings)
{
    for (const Setting& setting : settings)
        (void)Terminal::printLine(setting.schema + u' ' + setting.key + u' ' + setting.value);
    (void)Terminal::write("Set this in the settings of GNOME? [y/N] ");
    return Terminal::readLine().value_or(QString()).compare("y"_L1, Qt::CaseInsensitive) == 0;
}

} // namespace

Outcome bind(const CommandLine& line, const BusClient& /*client*/)
{
    if (!GnomeShortcut::isDesktop())
        return Failure{ExitCode::failed,
                       u"only GNOME's keys can be set from here; have the desktop run 'tessaly toggle' on a key"_s};
    const std::optional<QString> list = gsettings({u"get"_s, GnomeShortcut::listSchema(), GnomeShortcut::listKey()});
    if (!list)
        return Failure{ExitCode::failed, u"the settings of GNOME cannot be read ('gsettings')"_s};
    if (list->contains(GnomeShortcut::quoted(GnomeShortcut::path())))
        return Failure{ExitCode::failed, u"it is set already; GNOME's settings change it, under 'Keyboard'"_s};
    const auto chord = ClipboardCore::KeyChord::fromText(Preferences().value(PreferenceKey::hotKey));
    const QString ours = GnomeShortcut::schema();
    const QList<Setting> settings{
        {ours, u"name"_s, GnomeShortcut::quoted(u"Tessaly"_s)},
        {ours, u"command"_s, GnomeShortcut::quoted(toggleCommand())},
        {ours, u"binding"_s,
         GnomeShortcut::quoted(GnomeShortcut::accelerator(chord.value_or(ClipboardCore::KeyChord())))},
        {GnomeShortcut::listSchema(), GnomeShortcut::listKey(), withOurs(*list)}};
    if (!line.has("--yes"_L1) && !Terminal::isInput())
        return Failure{ExitCode::usage, u"nobody can be asked without a terminal; --yes agrees"_s};
    if (!line.has("--yes"_L1) && !isAgreed(settings))
        return Failure{ExitCode::failed, u"nothing was set"_s};
    const auto isSet = [](const Setting& setting) {
        return gsettings({u"set"_s, setting.schema, setting.key, setting.value}).has_value();
    };
    if (!std::ranges::all_of(settings, isSet))
        return Failure{ExitCode::failed, u"the settings of GNOME cannot be written ('gsettings')"_s};
    return std::nullopt;
}

} // namespace Clipboard::Command::Functions
