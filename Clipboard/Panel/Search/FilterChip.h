#pragma once

#include "DrawnButton.h"
#include "History/ClipType.h"

#include <optional>

namespace Clipboard {

/// One filter with its count: all entries (no type), or those of one type. Checked while it is the current filter.
class FilterChip final : public DrawnButton
{
    Q_OBJECT
public:
    FilterChip(std::optional<ClipboardCore::ClipType> type, QWidget* parent);

    [[nodiscard]] std::optional<ClipboardCore::ClipType> type() const { return m_type; }
    void setCount(int count);
    /// Left and right of the content; less than usual where the chips would not fit.
    void setPadding(int padding);

    [[nodiscard]] QSize controlSize() const override;

protected:
    [[nodiscard]] Look look() const override;
    void paintContent(QPainter& painter, const QRectF& control, const Look& look) override;

private:
    std::optional<ClipboardCore::ClipType> m_type;
    int m_count = -1;
    int m_padding;
};

} // namespace Clipboard
