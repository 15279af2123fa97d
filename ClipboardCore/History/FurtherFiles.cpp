#include "History/FurtherFiles.h"

#include "History/HistoryCoding.h"
#include "History/JSONValues.h"
#include "Sealing/ContentSeal.h"
#include "Support/AtomicFile.h"
#include "Support/JSONWriter.h"

#include <QFile>

#include <cmath>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace ClipboardCore {

namespace {

constexpr const char* sealContext = "files";

// An entry takes some 50 bytes, and the largest history has ten thousand of them.
constexpr qsizetype largestFile = qsizetype{4} * 1024 * 1024;
// More than a person copies at once.
constexpr int largestNumber = 999'999;

} // namespace

FurtherFiles::FurtherFiles(QString path)
    : m_path(std::move(path))
{
}

int FurtherFiles::numberFrom(double value)
{
    return value >= 1 && value <= largestNumber && value == std::floor(value) ? static_cast<int>(value) : 0;
}

bool FurtherFiles::isSealedOnDisk() const
{
    const auto content = read();
    return content && isSealed(*content);
}

/// Nothing also where no file is.
std::optional<QByteArray> FurtherFiles::read() const
{
    const int file = RegularFile::open(QFile::encodeName(m_path), O_RDONLY);
    if (file < 0)
        return std::nullopt;
    auto content = RegularFile::read(file, largestFile, HistoryCoding::decodePadding, [](QByteArrayView /*piece*/) {});
    ::close(file);
    return content;
}

void FurtherFiles::load(const ContentSeal* seal, QList<ClipItem>& items)
{
    m_trace = RegularFile::traceOf(m_path);
    auto content = read();
    m_isSealed = content && isSealed(*content);
    if (m_isSealed)
        content = seal != nullptr ? opened(*seal, *content, sealContext) : std::nullopt;
    if (content)
        m_numbers = decode(*std::move(content));
    else if (m_trace != RegularFile::Trace())
        m_numbers.reset();
    if (!m_numbers || m_numbers->isEmpty())
        return;
    for (ClipItem& item : items)
        item.furtherFiles = m_numbers->value(item.id);
}

std::optional<FurtherFiles::Numbers> FurtherFiles::decode(QByteArray json)
{
    namespace JSON = simdjson::ondemand;
    using simdjson::SUCCESS;
    json.reserve(json.size() + HistoryCoding::decodePadding);
    JSON::parser parser;
    JSON::document document;
    JSON::object object;
    if (parser.iterate(json.constData(), static_cast<size_t>(json.size()), static_cast<size_t>(json.capacity()))
                .get(document) != SUCCESS ||
        document.get_object().get(object) != SUCCESS)
        return std::nullopt;
    Numbers numbers;
    for (auto field : object) {
        std::string_view key;
        double number = 0;
        if (field.error() != SUCCESS || field.unescaped_key().get(key) != SUCCESS ||
            field.value().get_double().get(number) != SUCCESS)
            return std::nullopt;
        if (const auto id = HistoryCoding::decodedID(bytes(key)); id && numberFrom(number) > 0)
            numbers.insert(*id, numberFrom(number));
    }
    return numbers;
}

QByteArray FurtherFiles::encode(const Numbers& numbers)
{
    QByteArray content;
    JSONWriter json([&content](QByteArrayView bytes) { content += bytes; });
    json.beginObject();
    for (const auto& [id, number] : numbers.asKeyValueRange()) {
        const QByteArray key = HistoryCoding::encodedID(id);
        json.key(QLatin1String(key));
        json.number(number);
    }
    json.endObject();
    json.finish();
    return content;
}

void FurtherFiles::save(const QList<ClipItem>& items, const ContentSeal* seal)
{
    Numbers numbers;
    for (const ClipItem& item : items)
        if (item.furtherFiles > 0)
            numbers.insert(item.id, item.furtherFiles);
    const bool isToBeSealed = seal != nullptr && !numbers.isEmpty();
    if (m_numbers == numbers && m_isSealed == isToBeSealed && RegularFile::traceOf(m_path) == m_trace)
        return;
    m_numbers.reset();
    if (!write(numbers, seal))
        return;
    m_numbers = numbers;
    m_isSealed = isToBeSealed;
    m_trace = RegularFile::traceOf(m_path);
}

bool FurtherFiles::write(const Numbers& numbers, const ContentSeal* seal) const
{
    if (numbers.isEmpty())
        return !QFile::exists(m_path) || QFile::remove(m_path);
    AtomicFile file(m_path);
    file.append(sealed(encode(numbers), seal, sealContext));
    return !file.hasFailed() && !file.commit();
}

bool FurtherFiles::isAsWanted(bool isSealingWanted) const
{
    return m_trace == RegularFile::Trace() || m_isSealed == isSealingWanted;
}

} // namespace ClipboardCore
