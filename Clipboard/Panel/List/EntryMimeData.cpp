#include "EntryMimeData.h"

#include "History/CopiedFile.h"
#include "Sealing/StoredFile.h"

#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;
using ClipboardCore::ClipType;

namespace Clipboard {

namespace {

constexpr QLatin1String plainText("text/plain");
constexpr QLatin1String png("image/png");
// As much as a selection may hold.
constexpr qint64 maxPictureBytes = qint64{256} * 1024 * 1024;

QByteArray readPicture(const QString& path)
{
    if (QFileInfo(path).size() > maxPictureBytes)
        return {};
    return ClipboardCore::StoredFile::readAll(path).value_or(QByteArray());
}

} // namespace

std::unique_ptr<EntryMimeData> EntryMimeData::make(const ClipboardCore::ClipItem& item)
{
    std::unique_ptr<EntryMimeData> data(new EntryMimeData);
    if (item.type != ClipType::file && item.type != ClipType::image) {
        data->setData(plainText, item.content.utf8());
        return data;
    }
    const QByteArray& content = item.content.utf8();
    if (!ClipboardCore::CopiedFile::status(content))
        return nullptr;
    // Nobody else could read a sealed file.
    if (item.type == ClipType::file || !ClipboardCore::StoredFile::sealing().isWanted)
        data->setUrls({ClipboardCore::CopiedFile::url(content)});
    if (item.type == ClipType::image)
        data->m_picture = std::async(std::launch::async, readPicture, item.content.toString()).share();
    return data;
}

QStringList EntryMimeData::formats() const
{
    QStringList formats = QMimeData::formats();
    if (m_picture.valid())
        formats.prepend(png);
    return formats;
}

QVariant EntryMimeData::retrieveData(const QString& format, QMetaType type) const
{
    return m_picture.valid() && format == png ? m_picture.get() : QMimeData::retrieveData(format, type);
}

} // namespace Clipboard
