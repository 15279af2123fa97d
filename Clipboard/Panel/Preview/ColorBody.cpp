#include "ColorBody.h"

#include "ClipItemTexts.h"
#include "Painting.h"
#include "TextBlock.h"
#include "Theme.h"

#include <QPainter>

using namespace Qt::StringLiterals;
namespace ColorMath = ClipboardCore::ColorMath;

namespace Clipboard {

namespace {

constexpr int swatchSize = 98;
constexpr int swatchRadius = 12;
constexpr int rowsLeft = swatchSize + 20;
constexpr int rowHeight = 32;
constexpr int rowsTop = 1; // three rows stand in the middle of the swatch's height
constexpr int keyWidth = 36;
constexpr int keyGap = 12;

std::array<QString, 3> valueTexts(const ColorMath::RGB& color)
{
    const ColorMath::HSL hsl = ColorMath::rgbToHSL(color.r, color.g, color.b);
    return {QColor(color.r, color.g, color.b).name(QColor::HexRgb).toUpper(),
            u"%1, %2, %3"_s.arg(color.r).arg(color.g).arg(color.b), u"%1, %2%, %3%"_s.arg(hsl.h).arg(hsl.s).arg(hsl.l)};
}

} // namespace

ColorBody::ColorBody(QWidget* parent)
    : PreviewBody(parent)
    , m_rows{{{QLatin1String("HEX"), new TextBlock(Fonts::value, TextBlock::Lines::unbroken, this)},
              {QLatin1String("RGB"), new TextBlock(Fonts::value, TextBlock::Lines::unbroken, this)},
              {QLatin1String("HSL"), new TextBlock(Fonts::value, TextBlock::Lines::unbroken, this)}}}
{
    for (const KeyValue& row : m_rows) {
        connect(row.value, &TextBlock::pressed, this, [this, pressed = row.value] {
            for (const KeyValue& other : m_rows) {
                if (other.value != pressed)
                    other.value->clearSelection();
            }
        });
    }
}

void ColorBody::setItem(const ClipboardCore::ClipItem& item, int visibleHeight)
{
    m_color = ColorMath::colorOf(item.content);
    layOut(); // a hidden widget is told of its size only when it is shown
    const auto texts = m_color ? valueTexts(*m_color) : std::array<QString, 3>{rowTitle(item), {}, {}};
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        m_rows[i].value->setText(texts[i], {}, visibleHeight);
        m_rows[i].value->setAccessibleName(m_rows[i].key + u' ' + texts[i]); // the key is only drawn
    }
    update();
}

int ColorBody::contentHeight() const
{
    return swatchSize;
}

QString ColorBody::selectedText() const
{
    QString selected;
    for (const KeyValue& row : m_rows)
        selected += row.value->selectedText(); // of one at most
    return selected;
}

void ColorBody::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF swatch(0, 0, swatchSize, swatchSize);
    const QColor fill = m_color ? QColor(m_color->r, m_color->g, m_color->b) : QColor(Theme::well);
    Painting::roundedFill(painter, swatch, swatchRadius, fill, Theme::pictureEdge);
    int top = rowsTop;
    for (const KeyValue& row : m_rows) {
        if (top > rowsTop)
            painter.fillRect(QRect(rowsLeft, top, width() - rowsLeft, 1), Theme::seam);
        Painting::textLine(painter, QRectF(rowsLeft, top, keyWidth, rowHeight), Fonts::chip, Theme::text3, row.key);
        top += rowHeight;
    }
}

void ColorBody::layOut()
{
    const int left = rowsLeft + keyWidth + keyGap;
    int top = rowsTop + (rowHeight - Fonts::value.lineHeight) / 2;
    for (const KeyValue& row : m_rows) {
        row.value->setGeometry(left, top, width() - left, Fonts::value.lineHeight);
        top += rowHeight;
    }
}

void ColorBody::resizeEvent(QResizeEvent* event)
{
    layOut();
    PreviewBody::resizeEvent(event);
}

} // namespace Clipboard
