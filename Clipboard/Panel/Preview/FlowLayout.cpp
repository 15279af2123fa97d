#include "FlowLayout.h"

#include <algorithm>

namespace Clipboard {

QList<FlowLayout::Row> FlowLayout::rows(const QList<QSize>& sizes, std::optional<int> width) const
{
    QList<Row> rows;
    for (qsizetype i = 0; i < sizes.size(); ++i) {
        const QSize& size = sizes.at(i);
        const int widened = rows.isEmpty() ? 0 : rows.last().width + m_spacing + size.width();
        if (rows.isEmpty() || (width && widened > *width)) {
            rows.append({{i}, size.width(), size.height()});
            continue;
        }
        Row& row = rows.last();
        row.indices.append(i);
        row.width = widened;
        row.height = std::max(row.height, size.height());
    }
    return rows;
}

QSize FlowLayout::size(const QList<Row>& rows) const
{
    QSize size(0, std::max(0, static_cast<int>(rows.size()) - 1) * m_spacing);
    for (const Row& row : rows)
        size = {std::max(size.width(), row.width), size.height() + row.height};
    return size;
}

QList<QPoint> FlowLayout::places(const QList<QSize>& sizes, std::optional<int> width) const
{
    QList<QPoint> places;
    QPoint next;
    for (const Row& row : rows(sizes, width)) {
        next.setX(0);
        for (const qsizetype index : row.indices) {
            places.append(next);
            next.rx() += sizes.at(index).width() + m_spacing;
        }
        next.ry() += row.height + m_spacing;
    }
    return places;
}

} // namespace Clipboard
