#include "MetaCaption.h"

#include "Accessibility.h"
#include "ClipItemTexts.h"
#include "IconCache.h"
#include "ImageDimensions.h"
#include "OffMainThread.h"
#include "Painting.h"
#include "Support/Graphemes.h"
#include "Theme.h"

#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>
#include <QPainter>
#include <QPainterPath>
#include <QThreadPool>

using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;

namespace Clipboard {

namespace {

constexpr int iconSize = 14;
constexpr int gap = 6;
constexpr int cachedDetails = 128;
// Counted at once; above it takes long enough to be felt while an arrow key is held.
constexpr qsizetype countedAtOnce = 2048;
// Above this a text is told by its bytes: nobody wants to know its characters.
constexpr qsizetype countedCharacters = 262144;

QString bytes(qint64 count)
{
    return QLocale().formattedDataSize(count, 1, QLocale::DataSizeSIFormat);
}

QString textDetail(const ClipItem& item)
{
    if (item.content.byteCount() > countedCharacters)
        return bytes(item.content.byteCount());
    const auto count = ClipboardCore::Graphemes::count(item.content.toString());
    return MetaCaption::tr("%Ln characters", nullptr, static_cast<int>(count));
}

QStringList fileDetails(const ClipItem& item)
{
    const QFileInfo file(item.content.toString());
    QStringList details;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension);
    if (!type.isDefault() && !type.comment().isEmpty())
        details.append(type.comment());
    if (file.isFile())
        details.append(bytes(file.size()));
    return details;
}

/// Everything but pictures, whose label has a cache of its own. May read the file system and the whole text.
QStringList details(const ClipItem& item)
{
    switch (item.type) {
    case ClipType::text:
        return {textDetail(item)};
    case ClipType::code:
        return {MetaCaption::tr("%Ln lines", nullptr, static_cast<int>(item.content.utf8().count('\n') + 1))};
    case ClipType::file:
        return fileDetails(item);
    default:
        return {};
    }
}

} // namespace

MetaCaption::MetaCaption(QWidget* parent)
    : QWidget(parent)
    , m_details(cachedDetails)
{
    Accessibility::setRole(this, QAccessible::StaticText);
}

void MetaCaption::setItem(const ClipItem& item)
{
    m_item = item;
    m_icon = IconCache::shared().icon(item.bundleID);
    findDetails();
    setAccessibleName(parts().join(u' '));
    update();
}

void MetaCaption::findDetails()
{
    const ClipItem item = *m_item;
    const bool isShortText = item.type != ClipType::file && item.content.byteCount() <= countedAtOnce;
    if (item.type == ClipType::image || m_details.contains(item.id))
        return;
    if (isShortText) {
        m_details.insert(item.id, std::make_unique<QStringList>(details(item)).release());
        return;
    }
    runOffMainThread(
        *QThreadPool::globalInstance(), this, [item] { return details(item); },
        [this, id = item.id](const QStringList& found) {
            m_details.insert(id, std::make_unique<QStringList>(found).release());
            update();
            emit partsChanged();
        });
}

QStringList MetaCaption::parts() const
{
    if (!m_item)
        return {};
    QStringList parts{m_item->sourceApp.value_or(tr("Unknown")), ageLabel(*m_item, ClipboardCore::currentTime())};
    if (m_item->type == ClipType::image) {
        if (const auto size = ImageDimensions::label(m_item->content.toString()))
            parts.append(*size);
    } else if (const QStringList* found = m_details.object(m_item->id)) {
        parts += *found;
    }
    return parts;
}

void MetaCaption::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    qreal x = 0;
    if (!m_icon.isNull()) {
        const QRect square(0, (height - iconSize) / 2, iconSize, iconSize);
        QPainterPath rounded;
        rounded.addRoundedRect(square, Theme::appIconRadius, Theme::appIconRadius);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipPath(rounded);
        m_icon.paint(&painter, square);
        painter.restore();
        x = iconSize + gap;
    }
    const QString dot(u'·');
    bool first = true;
    for (const QString& part : parts()) {
        if (!first) {
            Painting::textLine(painter, {x, 0, width() - x, height}, Fonts::caption, Theme::text3, dot);
            x += Fonts::width(Fonts::caption, dot) + gap;
        }
        first = false;
        if (x >= width())
            break;
        Painting::textLine(painter, {x, 0, width() - x, height}, Fonts::caption, Theme::text2, part);
        x += Fonts::width(Fonts::caption, part) + gap;
    }
}

} // namespace Clipboard
