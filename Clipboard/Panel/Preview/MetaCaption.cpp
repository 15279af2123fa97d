#include "MetaCaption.h"

#include "Accessibility.h"
#include "ClipItemTexts.h"
#include "History/CopiedFile.h"
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

#include <algorithm>
#include <cmath>

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
    const QFileInfo file(ClipboardCore::CopiedFile::shownPath(item.content.utf8()));
    QStringList details;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension);
    if (!type.isDefault() && !type.comment().isEmpty())
        details.append(type.comment());
    const auto status = ClipboardCore::CopiedFile::status(item.content.utf8());
    if (status && status->isRegular)
        details.append(bytes(status->size));
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

/// The widest that a part may be so that all of them fit into `room`: the widest give way first, so that the name of a
/// program or of a type is elided before an age or a size.
qreal widestPart(QList<qreal> widths, qreal room)
{
    std::ranges::sort(widths);
    for (qsizetype i = 0; i < widths.size(); ++i) {
        const qreal share = room / static_cast<qreal>(widths.size() - i);
        if (widths.at(i) > share)
            return share;
        room -= widths.at(i);
    }
    return widths.isEmpty() ? 0 : widths.last();
}

} // namespace

MetaCaption::MetaCaption(QWidget* parent)
    : QWidget(parent)
    , m_details(cachedDetails)
{
    m_pool.setMaxThreadCount(1);
    Accessibility::setRole(this, QAccessible::StaticText);
}

MetaCaption::~MetaCaption()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void MetaCaption::setItem(const ClipItem& item)
{
    m_item = item;
    m_icon = IconCache::shared().icon(item.bundleID);
    findDetails();
    sync();
}

void MetaCaption::sync()
{
    setAccessibleName(parts().join(u' '));
    update();
}

void MetaCaption::findDetails()
{
    const ClipItem item = *m_item;
    const bool isFile = item.type == ClipType::file;
    if (item.type == ClipType::image || (!isFile && m_details.contains(item.id)))
        return;
    if (!isFile && item.content.byteCount() <= countedAtOnce)
        return keepDetails(item.id, details(item));
    m_pool.clear(); // the entries that were passed on the way here
    runOffMainThread(
        m_pool, this, [item] { return details(item); },
        [this, id = item.id](const QStringList& found) {
            keepDetails(id, found);
            if (m_item && m_item->id == id)
                sync();
            emit partsChanged();
        });
}

void MetaCaption::keepDetails(const QUuid& id, const QStringList& found)
{
    m_details.insert(id, std::make_unique<QStringList>(found).release());
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

void MetaCaption::paintIcon(QPainter& painter) const
{
    const QRect square(0, (height - iconSize) / 2, iconSize, iconSize);
    QPainterPath rounded;
    rounded.addRoundedRect(square, Theme::appIconRadius, Theme::appIconRadius);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(rounded);
    m_icon.paint(&painter, square);
    painter.restore();
}

void MetaCaption::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    qreal x = 0;
    if (!m_icon.isNull()) {
        paintIcon(painter);
        x = iconSize + gap;
    }
    const QString dot(u'·');
    const qreal separator = gap + Fonts::width(Fonts::caption, dot) + gap;
    const QStringList shown = parts();
    QList<qreal> widths;
    for (const QString& part : shown)
        widths.append(std::ceil(Fonts::width(Fonts::caption, part)));
    const qreal widest = widestPart(widths, width() - x - separator * static_cast<qreal>(shown.size() - 1));
    for (qsizetype i = 0; i < shown.size(); ++i) {
        if (i > 0) {
            Painting::textLine(painter, {x + gap, 0, separator, height}, Fonts::caption, Theme::text3, dot);
            x += separator;
        }
        const qreal room = std::min(widths.at(i), widest);
        x += Painting::textLine(painter, {x, 0, room, height}, Fonts::caption, Theme::text2, shown.at(i));
    }
}

} // namespace Clipboard
