#include "CommandLine.h"

#include <algorithm>
#include <optional>

namespace Clipboard::Command {

using namespace Qt::StringLiterals;

namespace {

QString placeholder(QLatin1String option)
{
    return option == "-n"_L1 ? u"N"_s : QString(option).remove(u'-').toUpper();
}

/// Takes the option that stands at `at`, and its value, which may be the argument after it.
std::optional<UsageError> takeOption(const Syntax& syntax, const QStringList& arguments, qsizetype& at,
                                     CommandLine& line)
{
    const QString& argument = arguments.at(at);
    const qsizetype equals = argument.indexOf(u'=');
    const QString name = equals < 0 ? argument : argument.first(equals);
    const auto option = std::ranges::find(syntax.options, name, &Syntax::Option::name);
    if (option == syntax.options.cend())
        return UsageError{u"'%1' has no option '%2'"_s.arg(syntax.command, name)};
    if (option->takes == Syntax::Takes::flag) {
        if (equals >= 0)
            return UsageError{u"the option '%1' takes no value"_s.arg(name)};
        line.options.insert(name, {});
    } else if (equals >= 0) {
        line.options.insert(name, argument.mid(equals + 1));
    } else if (at + 1 < arguments.size()) {
        line.options.insert(name, arguments.at(++at));
    } else {
        return UsageError{u"the option '%1' needs a value"_s.arg(name)};
    }
    return std::nullopt;
}

} // namespace

std::variant<CommandLine, UsageError> parse(const Syntax& syntax, const QStringList& arguments)
{
    CommandLine line;
    bool mayBeOption = true;
    for (qsizetype at = 0; at < arguments.size(); ++at) {
        const QString& argument = arguments.at(at);
        if (mayBeOption && argument == "--"_L1)
            mayBeOption = false;
        else if (!mayBeOption || argument == "-"_L1 || !argument.startsWith(u'-'))
            line.operands.append(argument);
        else if (const auto error = takeOption(syntax, arguments, at, line))
            return *error;
    }
    if (line.operands.size() < syntax.fewestOperands)
        return UsageError{u"'%1' needs %2"_s.arg(syntax.command, syntax.operands)};
    if (line.operands.size() > syntax.mostOperands)
        return UsageError{u"'%1' has no use for '%2'"_s.arg(syntax.command, line.operands.at(syntax.mostOperands))};
    return line;
}

QString usage(const Syntax& syntax)
{
    QString text = syntax.command;
    for (const Syntax::Option& option : syntax.options)
        text += option.takes == Syntax::Takes::flag ? u" [%1]"_s.arg(option.name)
                                                    : u" [%1 %2]"_s.arg(option.name, placeholder(option.name));
    return syntax.operands.isEmpty() ? text : text + u' ' + syntax.operands;
}

} // namespace Clipboard::Command
