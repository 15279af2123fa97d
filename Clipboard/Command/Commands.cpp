#include "Commands.h"

#include "BusEntry.h"
#include "Functions.h"
#include "Support/CoreDumps.h"
#include "Terminal.h"

#include <QCoreApplication>

#include <algorithm>
#include <functional>

namespace Clipboard::Command {

using namespace Qt::StringLiterals;

namespace {

using Takes = Syntax::Takes;
using Functions::Outcome;

struct Definition
{
    Syntax syntax;
    std::function<Outcome(const CommandLine&, const BusClient&)> run;
};

auto calling(const QString& method)
{
    return [method](const CommandLine&, const BusClient& client) { return Functions::plain(method, client); };
}

auto callingOnEntry(const QString& method)
{
    return
        [method](const CommandLine& line, const BusClient& client) { return Functions::onEntry(method, line, client); };
}

QList<Definition> definitions()
{
    const Syntax::Option json{"--json"_L1};
    const Syntax::Option pinned{"--pinned"_L1};
    const Syntax::Option type{"--type"_L1, Takes::value};
    return {
        {{"toggle"_L1, ""_L1, 0, 0, {}, "open the panel, or close it"_L1}, calling(u"Toggle"_s)},
        {{"show"_L1, ""_L1, 0, 0, {}, "open the panel"_L1}, calling(u"Show"_s)},
        {{"hide"_L1, ""_L1, 0, 0, {}, "close the panel"_L1}, calling(u"Hide"_s)},
        {{"list"_L1,
          ""_L1,
          0,
          0,
          {type, {"--search"_L1, Takes::value}, pinned, {"-n"_L1, Takes::value}, json},
          "list entries, in the panel's order"_L1},
         Functions::list},
        {{"get"_L1, "ENTRY"_L1, 1, 1, {type}, "write an entry's content to standard output"_L1}, Functions::get},
        {{"copy"_L1, "ENTRY"_L1, 1, 1, {}, "put an entry on the clipboard"_L1}, callingOnEntry(u"Copy"_s)},
        {{"paste"_L1, "ENTRY"_L1, 1, 1, {}, "paste an entry into the window in front"_L1}, callingOnEntry(u"Paste"_s)},
        {{"add"_L1, "[TEXT]"_L1, 0, 1, {type}, "make an entry of the text, or of standard input"_L1}, Functions::add},
        {{"pin"_L1, "ENTRY"_L1, 1, 1, {}, "keep an entry, on top"_L1}, callingOnEntry(u"Pin"_s)},
        {{"unpin"_L1, "ENTRY"_L1, 1, 1, {}, "let it go with the others"_L1}, callingOnEntry(u"Unpin"_s)},
        {{"delete"_L1, "ENTRY"_L1, 1, 1, {}, "delete an entry"_L1}, callingOnEntry(u"Delete"_s)},
        {{"clear"_L1, ""_L1, 0, 0, {pinned}, "delete all entries; pinned ones only with --pinned"_L1},
         Functions::clear},
        {{"actions"_L1, "ENTRY"_L1, 1, 1, {}, "list what can be done with an entry"_L1}, Functions::actions},
        {{"run"_L1, "ENTRY ACTION"_L1, 2, 2, {}, "do that"_L1}, Functions::run},
        {{"annotate"_L1, "ENTRY|FILE"_L1, 1, 1, {}, "open a picture in the editor"_L1}, Functions::annotate},
        {{"pause"_L1, "[DURATION]"_L1, 0, 1, {}, "record nothing, for 45m, 2h or until 'resume'"_L1}, Functions::pause},
        {{"resume"_L1, ""_L1, 0, 0, {}, "record again"_L1}, calling(u"Resume"_s)},
        {{"config"_L1, "[list | get KEY | set KEY VALUE…]"_L1, 0, 300, {}, "read and change preferences"_L1},
         Functions::config},
        {{"preferences"_L1, ""_L1, 0, 0, {}, "open the window for them"_L1}, calling(u"ShowPreferences"_s)},
        {{"bind"_L1, ""_L1, 0, 0, {{"--yes"_L1}}, "have GNOME open the panel on the hot key, after asking"_L1},
         Functions::bind},
        {{"status"_L1, ""_L1, 0, 0, {json}, "what works in this session, and what was skipped"_L1}, Functions::status},
        {{"watch"_L1, ""_L1, 0, 0, {}, "print each change of the history as a line of JSON"_L1}, Functions::watch},
        {{"quit"_L1, ""_L1, 0, 0, {}, "end the program"_L1}, calling(u"Quit"_s)},
    };
}

int fail(const Failure& failure)
{
    Terminal::complain(failure.text);
    return static_cast<int>(failure.code);
}

int runDefinition(const Definition& definition, const QStringList& arguments)
{
    if (arguments == QStringList{u"--help"_s} || arguments == QStringList{u"-h"_s})
        return Terminal::printLine(u"Usage: tessaly "_s + usage(definition.syntax)) ? 0 : 1;
    const auto parsed = parse(definition.syntax, arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed)) {
        Terminal::complain(error->text);
        Terminal::complain(u"usage: tessaly "_s + usage(definition.syntax));
        return static_cast<int>(ExitCode::usage);
    }
    const Outcome failure = definition.run(std::get<CommandLine>(parsed), BusClient());
    return failure ? fail(*failure) : static_cast<int>(ExitCode::done);
}

} // namespace

bool isMeant(int argc, char** argv)
{
    return argc > 1 && argv[1][0] != '-' && argv[1][0] != '\0';
}

int run(int argc, char** argv)
{
    ClipboardCore::CoreDumps::forbid(); // contents pass through
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"Tessaly"_s); // whose preferences are meant
    QCoreApplication::setOrganizationName(u"Tessaly"_s);
    Bus::registerBusEntry();
    const QStringList arguments = QCoreApplication::arguments();
    const QString& name = arguments.at(1);
    const QList<Definition> all = definitions();
    const auto definition =
        std::ranges::find_if(all, [&name](const Definition& known) { return known.syntax.command == name; });
    if (definition == all.cend())
        return fail({ExitCode::usage, u"unknown command '%1'; try --help"_s.arg(name)});
    return runDefinition(*definition, arguments.mid(2));
}

QString help()
{
    constexpr qsizetype widest = 24;
    QString text;
    const QList<Definition> all = definitions();
    for (const Definition& definition : all) {
        const Syntax& syntax = definition.syntax;
        QString form = QString(syntax.command) + u' ' + syntax.operands;
        if (form.size() > widest)
            form = syntax.command + u" …"_s;
        text += u"  "_s + form.leftJustified(widest) + syntax.summary + u'\n';
    }
    return text;
}

} // namespace Clipboard::Command
