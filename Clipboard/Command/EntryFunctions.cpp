#include "BusContent.h"
#include "EntryPrinter.h"
#include "Functions.h"
#include "PreviewLine.h"
#include "Terminal.h"

#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QFile>
#include <QJsonArray>

/// The commands that have to do with entries.
namespace Clipboard::Command::Functions {

using namespace Qt::StringLiterals;

namespace {

// What the clipboard hands over at most, too.
constexpr qint64 largestInput = qint64{256} * 1024 * 1024;

/// The entry that is meant: "-" reads a line of standard input.
std::variant<QString, Failure> entryName(const CommandLine& line)
{
    const QString& operand = line.operands.constFirst();
    if (operand != "-"_L1)
        return operand;
    const std::optional<QString> read = Terminal::readLine();
    if (!read || read->isEmpty())
        return Failure{ExitCode::failed, u"standard input names no entry"_s};
    return nameInLine(*read);
}

/// Calls the method with the entry that is named, and with what follows.
Answer callOnEntry(const QString& method, const CommandLine& line, const BusClient& client,
                   const QVariantList& others = {}, std::chrono::milliseconds limit = Bus::answerLimit)
{
    const std::variant<QString, Failure> name = entryName(line);
    if (const auto* failure = std::get_if<Failure>(&name))
        return *failure;
    return client.call(method, QVariantList{std::get<QString>(name)} + others, limit);
}

std::variant<QVariantMap, Failure> listOptions(const CommandLine& line)
{
    QVariantMap options;
    if (line.has("--type"_L1)) {
        const QString type = line.value("--type"_L1);
        if (!ClipboardCore::clipTypeFromRawValue(type))
            return Failure{ExitCode::usage,
                           u"there is no type '%1'; there are text, link, image, color, code and file"_s.arg(type)};
        options.insert(u"type"_s, type);
    }
    if (line.has("--search"_L1))
        options.insert(u"search"_s, line.value("--search"_L1));
    if (line.has("--pinned"_L1))
        options.insert(u"pinned"_s, true);
    if (line.has("-n"_L1)) {
        bool isNumber = false;
        const uint limit = line.value("-n"_L1).toUInt(&isNumber);
        if (!isNumber)
            return Failure{ExitCode::usage, u"'-n' needs a number"_s};
        options.insert(u"limit"_s, limit);
    }
    return options;
}

Outcome printFile(int descriptor, bool isShown)
{
    constexpr qint64 step = qint64{1} << 20;
    QFile file;
    if (!file.open(descriptor, QFile::ReadOnly) || !file.seek(0))
        return Failure{ExitCode::failed, u"the content cannot be read"_s};
    if (isShown)
        return Terminal::write(Bus::withoutControls(QString::fromUtf8(file.readAll())).toUtf8())
                   ? Outcome()
                   : Outcome(cannotWrite());
    for (QByteArray bytes = file.read(step); !bytes.isEmpty(); bytes = file.read(step)) {
        if (!Terminal::write(bytes))
            return cannotWrite();
    }
    return std::nullopt;
}

bool isPicture(const QByteArray& beginning)
{
    return beginning.startsWith("\x89PNG");
}

Outcome print(const QVariant& content)
{
    if (content.metaType() != QMetaType::fromType<QDBusUnixFileDescriptor>()) {
        const QByteArray bytes = content.toByteArray();
        const bool isWritten = Terminal::write(
            Terminal::isOutput() ? Bus::withoutControls(QString::fromUtf8(bytes)).toUtf8() + '\n' : bytes);
        return isWritten ? Outcome() : Outcome(cannotWrite());
    }
    const auto descriptor = content.value<QDBusUnixFileDescriptor>();
    if (!Terminal::isOutput())
        return printFile(descriptor.fileDescriptor(), false);
    QFile file;
    if (file.open(descriptor.fileDescriptor(), QFile::ReadOnly) && file.seek(0) && isPicture(file.read(4)))
        return Failure{ExitCode::failed, u"this is a picture; send it into a file or to another program"_s};
    return printFile(descriptor.fileDescriptor(), true);
}

} // namespace

Failure cannotWrite()
{
    return {ExitCode::failed, u"the output cannot be written"_s};
}

Outcome failureIn(const Answer& answer)
{
    const auto* failure = std::get_if<Failure>(&answer);
    return failure ? Outcome(*failure) : std::nullopt;
}

Outcome plain(const QString& method, const BusClient& client)
{
    return failureIn(client.call(method));
}

Outcome onEntry(const QString& method, const CommandLine& line, const BusClient& client)
{
    return failureIn(callOnEntry(method, line, client));
}

Outcome list(const CommandLine& line, const BusClient& client)
{
    const auto options = listOptions(line);
    if (const auto* failure = std::get_if<Failure>(&options))
        return *failure;
    const Answer answer = client.call(u"List"_s, {std::get<QVariantMap>(options)});
    if (Outcome failure = failureIn(answer))
        return failure;
    const auto entries = qdbus_cast<QList<Bus::BusEntry>>(std::get<QVariantList>(answer).value(0));
    QString output;
    QJsonArray array;
    for (const Bus::BusEntry& entry : entries) {
        if (line.has("--json"_L1))
            array.append(entryObject(entry));
        else
            output += entryLine(entry) + u'\n';
    }
    if (line.has("--json"_L1))
        output = compactJSON(array) + u'\n';
    return Terminal::write(output.toUtf8()) ? Outcome() : Outcome(cannotWrite());
}

Outcome get(const CommandLine& line, const BusClient& client)
{
    const Answer answer = callOnEntry(u"Get"_s, line, client, {line.value("--type"_L1)});
    if (Outcome failure = failureIn(answer))
        return failure;
    return print(std::get<QVariantList>(answer).value(0).value<QDBusVariant>().variant());
}

Outcome annotate(const CommandLine& line, const BusClient& client)
{
    // What could be either is an entry: a file of that name can be written with its folder.
    const QString& operand = line.operands.constFirst();
    if (!operand.contains(u'/') && !operand.contains(u'.'))
        return onEntry(u"Annotate"_s, line, client);
    QFile file(operand);
    // Devices are files without an end.
    const std::optional<QByteArray> picture =
        file.open(QFile::ReadOnly | QFile::Unbuffered) ? Terminal::readAll(largestInput, file.handle()) : std::nullopt;
    if (!picture)
        return Failure{ExitCode::failed, u"'%1' cannot be read, or is larger than 256 MiB"_s.arg(operand)};
    const std::optional<QVariant> sent = Bus::toWire(*picture);
    if (!sent)
        return Failure{ExitCode::failed, u"there is no memory for '%1'"_s.arg(operand)};
    const Answer answer =
        client.call(u"Add"_s, {u"image/png"_s, QVariant::fromValue(QDBusVariant(*sent))}, Bus::workLimit);
    if (Outcome failure = failureIn(answer))
        return failure;
    return failureIn(client.call(u"Annotate"_s, {std::get<QVariantList>(answer).value(0)}));
}

Outcome add(const CommandLine& line, const BusClient& client)
{
    const bool isGiven = !line.operands.isEmpty() && line.operands.constFirst() != "-"_L1;
    const std::optional<QByteArray> content =
        isGiven ? line.operands.constFirst().toUtf8() : Terminal::readAll(largestInput);
    const std::optional<QVariant> sent = content ? Bus::toWire(*content) : std::nullopt;
    if (!sent)
        return Failure{ExitCode::failed, u"standard input cannot be read, or is larger than 256 MiB"_s};
    const QString type = line.has("--type"_L1) ? line.value("--type"_L1) : u"text/plain"_s;
    const Answer answer = client.call(u"Add"_s, {type, QVariant::fromValue(QDBusVariant(*sent))}, Bus::workLimit);
    if (Outcome failure = failureIn(answer))
        return failure;
    return Terminal::printLine(std::get<QVariantList>(answer).value(0).toString()) ? Outcome() : Outcome(cannotWrite());
}

Outcome clear(const CommandLine& line, const BusClient& client)
{
    return failureIn(client.call(u"Clear"_s, {line.has("--pinned"_L1)}));
}

Outcome actions(const CommandLine& line, const BusClient& client)
{
    const Answer answer = callOnEntry(u"Actions"_s, line, client, {}, Bus::workLimit);
    if (Outcome failure = failureIn(answer))
        return failure;
    const QStringList labels = std::get<QVariantList>(answer).value(0).toStringList();
    for (const QString& label : labels) {
        if (!Terminal::printLine(label))
            return cannotWrite();
    }
    return std::nullopt;
}

Outcome run(const CommandLine& line, const BusClient& client)
{
    return failureIn(callOnEntry(u"Run"_s, line, client, {line.operands.at(1)}, Bus::workLimit));
}

} // namespace Clipboard::Command::Functions
