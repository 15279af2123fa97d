#include "History/JournalCoding.h"

#include "History/EntryReader.h"
#include "History/FurtherFiles.h"
#include "History/HistoryCoding.h"

#include <cmath>
#include <string_view>

using namespace Qt::StringLiterals;

namespace ClipboardCore::JournalCoding {

namespace {

namespace JSON = simdjson::ondemand;
using HistoryCoding::encodedID;
using simdjson::SUCCESS;

namespace Keys {
constexpr auto operation = "op"_L1;
constexpr auto time = "time"_L1;
constexpr auto device = "device"_L1;
constexpr auto entry = "entry"_L1;
constexpr auto ids = "ids"_L1;
constexpr auto size = "size"_L1;
constexpr auto fingerprint = "fingerprint"_L1;
constexpr auto missing = "missing"_L1;
constexpr auto furtherFiles = "furtherFiles"_L1;
} // namespace Keys

namespace Names {
constexpr QByteArrayView file = "file";
constexpr QByteArrayView put = "put";
constexpr QByteArrayView touch = "touch";
constexpr QByteArrayView pin = "pin";
constexpr QByteArrayView remove = "remove";
constexpr QByteArrayView evict = "evict";
} // namespace Names

constexpr int fingerprintDigits = 16;

void writeText(JSONWriter& json, QLatin1String key, QByteArrayView utf8)
{
    json.key(key);
    json.string(utf8);
}

void writeNumber(JSONWriter& json, QLatin1String key, double value)
{
    json.key(key);
    json.number(value);
}

void writeFurtherFiles(JSONWriter& json, int number)
{
    if (number > 0)
        writeNumber(json, Keys::furtherFiles, number);
}

QByteArrayView nameOf(const HistoryOperation& operation)
{
    if (const auto* remove = std::get_if<HistoryOperation::Remove>(&operation.change))
        return remove->isEviction ? Names::evict : Names::remove;
    if (std::holds_alternative<HistoryOperation::Put>(operation.change))
        return Names::put;
    return std::holds_alternative<HistoryOperation::Pin>(operation.change) ? Names::pin : Names::touch;
}

void write(const HistoryOperation::Put& put, JSONWriter& json)
{
    json.key(Keys::entry);
    HistoryCoding::encode(put.entry, json);
    writeFurtherFiles(json, put.entry.furtherFiles);
}

void write(const HistoryOperation::Touch& touch, JSONWriter& json)
{
    writeText(json, EntryKeys::id, encodedID(touch.id));
    if (touch.sourceApp)
        writeText(json, EntryKeys::sourceApp, touch.sourceApp->toUtf8());
    if (touch.bundleID)
        writeText(json, EntryKeys::bundleID, touch.bundleID->toUtf8());
    writeNumber(json, EntryKeys::createdAt, touch.createdAt);
    writeFurtherFiles(json, touch.furtherFiles);
}

void write(const HistoryOperation::Pin& pin, JSONWriter& json)
{
    writeText(json, EntryKeys::id, encodedID(pin.id));
    json.key(EntryKeys::isPinned);
    json.boolean(pin.isPinned);
}

void write(const HistoryOperation::Remove& remove, JSONWriter& json)
{
    json.key(Keys::ids);
    json.beginArray();
    for (const QUuid& id : remove.ids)
        json.string(encodedID(id));
    json.endArray();
}

/// What a line says, before it is known whether that is all that its operation needs.
struct Fields
{
    QByteArray operation;
    std::optional<double> time;
    std::optional<ClipItem> entry;
    std::optional<QUuid> id;
    std::optional<QList<QUuid>> ids;
    std::optional<double> createdAt;
    std::optional<QString> sourceApp;
    std::optional<QString> bundleID;
    std::optional<bool> isPinned;
    std::optional<double> size;
    std::optional<quint64> fingerprint;
    std::optional<double> missing;
    std::optional<double> furtherFiles;
};

std::optional<HistoryOperation> operationOf(const Fields& fields)
{
    const auto happened = [&fields](const auto& change) {
        return fields.time ? std::optional(HistoryOperation{*fields.time, change}) : std::nullopt;
    };
    const int furtherFiles = FurtherFiles::numberFrom(fields.furtherFiles.value_or(0));
    if (fields.operation == Names::put && fields.entry) {
        HistoryOperation::Put put{*fields.entry};
        put.entry.furtherFiles = furtherFiles;
        return happened(put);
    }
    if (fields.operation == Names::touch && fields.id && fields.createdAt)
        return happened(
            HistoryOperation::Touch{*fields.id, *fields.createdAt, fields.sourceApp, fields.bundleID, furtherFiles});
    if (fields.operation == Names::pin && fields.id && fields.isPinned)
        return happened(HistoryOperation::Pin{*fields.id, *fields.isPinned});
    if ((fields.operation == Names::remove || fields.operation == Names::evict) && fields.ids)
        return happened(HistoryOperation::Remove{*fields.ids, fields.operation == Names::evict});
    return std::nullopt;
}

std::optional<Mark> markOf(const Fields& fields)
{
    const auto isCount = [](std::optional<double> value) {
        return value && *value >= 0 && *value <= double(HistoryCoding::largestDocument) && *value == std::floor(*value);
    };
    if (!isCount(fields.size) || !isCount(fields.missing) || !fields.fingerprint)
        return std::nullopt;
    return Mark{{static_cast<qint64>(*fields.size), *fields.fingerprint}, static_cast<qint64>(*fields.missing)};
}

bool isKnown(const QByteArray& name)
{
    return name == Names::put || name == Names::touch || name == Names::pin || name == Names::remove ||
           name == Names::evict;
}

std::optional<Decoder::Line> lineOf(const Fields& fields)
{
    const auto line = [](const auto& content) {
        return content ? std::optional(Decoder::Line(*content)) : std::nullopt;
    };
    if (fields.operation == Names::file)
        return line(markOf(fields));
    if (isKnown(fields.operation))
        return line(operationOf(fields));
    return fields.operation.isEmpty() ? std::nullopt : std::optional(Decoder::Line());
}

} // namespace

void encode(const HistoryOperation& operation, QByteArrayView device, const JSONWriter::Sink& sink)
{
    JSONWriter json(sink);
    json.beginObject();
    writeText(json, Keys::operation, nameOf(operation));
    writeNumber(json, Keys::time, operation.time);
    writeText(json, Keys::device, device);
    std::visit([&json](const auto& change) { write(change, json); }, operation.change);
    json.endObject();
    json.finish();
    sink("\n");
}

QByteArray encode(const Mark& mark)
{
    QByteArray line;
    JSONWriter json([&line](QByteArrayView bytes) { line += bytes; });
    json.beginObject();
    writeText(json, Keys::operation, Names::file);
    writeNumber(json, Keys::size, double(mark.file.size));
    writeText(json, Keys::fingerprint,
              QByteArray::number(mark.file.fingerprint, 16).rightJustified(fingerprintDigits, '0'));
    writeNumber(json, Keys::missing, double(mark.missing));
    json.endObject();
    json.finish();
    return line + '\n';
}

bool isMark(QByteArrayView line)
{
    return line.startsWith(R"({"op":"file",)");
}

struct Decoder::Private
{
    [[nodiscard]] bool readField(QByteArrayView key, JSON::value value, Fields& fields);
    [[nodiscard]] bool readIDs(JSON::value value, QList<QUuid>& ids);
    [[nodiscard]] std::optional<QUuid> readID(JSON::value value);

    JSON::parser parser;
    JSONValues values{parser};
    EntryReader entries{values};
};

std::optional<QUuid> Decoder::Private::readID(JSON::value value)
{
    const auto text = values.text(value);
    return text ? HistoryCoding::decodedID(*text) : std::nullopt;
}

bool Decoder::Private::readIDs(JSON::value value, QList<QUuid>& ids)
{
    JSON::array array;
    if (value.get(array) != SUCCESS)
        return false;
    for (auto element : array) {
        JSON::value text;
        if (element.get(text) != SUCCESS)
            return false;
        const auto id = readID(text);
        if (!id)
            return false;
        ids.append(*id);
    }
    return true;
}

bool Decoder::Private::readField(QByteArrayView key, JSON::value value, Fields& fields)
{
    const auto number = [&value](std::optional<double>& field) {
        return value.get_double().get(field.emplace()) == SUCCESS;
    };
    if (key == Keys::time)
        return number(fields.time);
    if (key == EntryKeys::createdAt)
        return number(fields.createdAt);
    if (key == Keys::size)
        return number(fields.size);
    if (key == Keys::missing)
        return number(fields.missing);
    if (key == Keys::furtherFiles)
        return number(fields.furtherFiles);
    if (key == EntryKeys::sourceApp)
        return values.readOptional(value, fields.sourceApp);
    if (key == EntryKeys::bundleID)
        return values.readOptional(value, fields.bundleID);
    if (key == EntryKeys::isPinned)
        return value.get_bool().get(fields.isPinned.emplace()) == SUCCESS;
    if (key == Keys::entry)
        return (fields.entry = entries.read(value)).has_value();
    if (key == EntryKeys::id)
        return (fields.id = readID(value)).has_value();
    if (key == Keys::ids)
        return readIDs(value, fields.ids.emplace());
    if (key != Keys::operation && key != Keys::fingerprint)
        return JSONValues::isValid(value);

    const auto text = values.text(value);
    bool isRight = text.has_value();
    if (isRight && key == Keys::operation)
        fields.operation = text->toByteArray();
    else if (isRight)
        fields.fingerprint = text->toByteArray().toULongLong(&isRight, 16);
    return isRight;
}

Decoder::Decoder()
    : d(std::make_unique<Private>())
{
}

Decoder::~Decoder() = default;

std::optional<Decoder::Line> Decoder::decode(QByteArrayView line)
{
    JSON::document document;
    JSON::object object;
    const auto size = static_cast<size_t>(line.size());
    if (d->parser.iterate(line.data(), size, size + simdjson::SIMDJSON_PADDING).get(document) != SUCCESS ||
        document.get_object().get(object) != SUCCESS)
        return std::nullopt;
    Fields fields;
    for (auto field : object) {
        std::string_view key;
        if (field.error() != SUCCESS || field.unescaped_key().get(key) != SUCCESS ||
            !d->readField(bytes(key), field.value().value_unsafe(), fields))
            return std::nullopt;
    }
    // Being past the end is the one sign that nothing follows the object.
    if (document.current_location().error() != simdjson::OUT_OF_BOUNDS)
        return std::nullopt;
    return lineOf(fields);
}

} // namespace ClipboardCore::JournalCoding
