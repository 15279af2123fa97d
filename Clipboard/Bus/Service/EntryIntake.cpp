#include "EntryIntake.h"

#include "BusContent.h"
#include "History/CopiedFile.h"
#include "History/TypeDetector.h"
#include "ImageBlobs.h"
#include "OffMainThread.h"
#include "SelectionLimits.h"
#include "Support/WhiteSpace.h"
#include "UriList.h"

#include <QSysInfo>

#include <utility>

namespace Clipboard::Bus {

using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::Utf8Text;

namespace {

ClipItem entry(ClipType type, const Utf8Text& content)
{
    return {QUuid::createUuid(), type, content, {}, {}, ClipboardCore::currentTime(), false};
}

std::optional<ClipItem> textEntry(const QByteArray& bytes)
{
    const Utf8Text text = Utf8Text::fromUtf8(bytes);
    if (ClipboardCore::WhiteSpace::isBlank(text.utf8()))
        return std::nullopt;
    return entry(ClipboardCore::TypeDetector::classify(text), text);
}

std::optional<ClipItem> fileEntry(const QByteArray& list)
{
    const QList<QUrl> files = UriList::localFiles(list, QSysInfo::machineHostName().toUtf8());
    if (files.isEmpty())
        return std::nullopt;
    ClipItem item = entry(ClipType::file, ClipboardCore::CopiedFile::content(files.first()));
    item.furtherFiles = static_cast<int>(files.size() - 1);
    return item;
}

std::optional<ClipItem> makeEntry(const QString& type, const QByteArray& bytes, const QString& imagesDir)
{
    if (type.startsWith("image/"_L1)) {
        const std::optional<QString> path = ImageBlobs::write(bytes, imagesDir);
        return path ? std::optional(entry(ClipType::image, *path)) : std::nullopt;
    }
    return type == "text/uri-list"_L1 ? fileEntry(bytes) : textEntry(bytes);
}

} // namespace

EntryIntake::EntryIntake(QString imagesDir)
    : m_imagesDir(std::move(imagesDir))
{
    m_pool.setMaxThreadCount(1);
}

EntryIntake::~EntryIntake()
{
    m_pool.waitForDone();
}

bool EntryIntake::takes(const QString& type)
{
    return type == "text/plain"_L1 || type == "text/uri-list"_L1 || type == "image/png"_L1 || type == "image/tiff"_L1;
}

void EntryIntake::take(const QString& type, const QVariant& content, Done done)
{
    const auto make = [type, content, dir = m_imagesDir]() -> std::optional<ClipItem> {
        const std::optional<QByteArray> bytes = fromWire(content, maxSelectionBytes);
        return bytes ? makeEntry(type, *bytes, dir) : std::nullopt;
    };
    runOffMainThread(m_pool, this, make, std::move(done));
}

} // namespace Clipboard::Bus
