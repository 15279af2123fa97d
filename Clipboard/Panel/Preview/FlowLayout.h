#pragma once

#include <QList>
#include <QPoint>
#include <QSize>

#include <optional>

namespace Clipboard {

/// Where things go that stand side by side and wrap to a new row when the next one does not fit. Only sizes are known
/// to it, so that it serves what is laid out as well as what is merely measured.
class FlowLayout
{
public:
    struct Row
    {
        QList<qsizetype> indices; // into the sizes
        int width = 0;
        int height = 0;
    };

    explicit FlowLayout(int spacing)
        : m_spacing(spacing)
    {
    }

    /// The rows that things of these sizes make. What is wider than `width` gets a row of its own; without a width
    /// there is one row.
    [[nodiscard]] QList<Row> rows(const QList<QSize>& sizes, std::optional<int> width) const;
    /// What the rows take, with the spacing between them.
    [[nodiscard]] QSize size(const QList<Row>& rows) const;
    /// The top left corner of each thing, in the order of `sizes`.
    [[nodiscard]] QList<QPoint> places(const QList<QSize>& sizes, std::optional<int> width) const;

private:
    int m_spacing;
};

} // namespace Clipboard
