#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <variant>

namespace Clipboard::Command {

/// How a command is written.
struct Syntax
{
    enum class Takes { flag, value };
    struct Option
    {
        QLatin1String name; // with its dashes
        Takes takes = Takes::flag;
    };

    QLatin1String command;
    QLatin1String operands; // for the help: "ENTRY ACTION"
    qsizetype fewestOperands = 0;
    qsizetype mostOperands = 0;
    QList<Option> options{};
    QLatin1String summary;
};

/// A command as somebody has written it.
struct CommandLine
{
    QStringList operands;
    QHash<QString, QString> options; // a flag's value is empty

    [[nodiscard]] bool has(QLatin1String option) const { return options.contains(option); }
    [[nodiscard]] QString value(QLatin1String option) const { return options.value(option); }
};

/// What is wrong with it, as a sentence for whoever wrote it.
struct UsageError
{
    QString text;
};

/// `arguments` without the program and the command. Options may stand anywhere before "--"; "-" is an operand.
[[nodiscard]] std::variant<CommandLine, UsageError> parse(const Syntax& syntax, const QStringList& arguments);

/// "list [--type TYPE] [--json]"
[[nodiscard]] QString usage(const Syntax& syntax);

} // namespace Clipboard::Command
