#pragma once

#include "Actions/ColorMath.h"
#include "PreviewBody.h"

#include <array>
#include <optional>

namespace Clipboard {

class TextBlock;

/// A colour as a swatch beside its values.
class ColorBody final : public PreviewBody
{
    Q_OBJECT
public:
    explicit ColorBody(QWidget* parent);

    void setItem(const ClipboardCore::ClipItem& item, int visibleHeight) override;
    [[nodiscard]] int contentHeight() const override;
    [[nodiscard]] QString selectedText() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct KeyValue
    {
        QLatin1String key;
        TextBlock* value;
    };
    void layOut();

    std::optional<ClipboardCore::ColorMath::RGB> m_color;
    std::array<KeyValue, 3> m_rows;
};

} // namespace Clipboard
