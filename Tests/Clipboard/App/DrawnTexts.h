#pragma once

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

namespace Clipboard::Testing {

/// A run of text as a widget drew it.
struct DrawnText
{
    QString text;
    QRectF box;   // in the coordinates of the widget that was asked
    QRegion clip; // what of it can be seen
};

/// Notes the texts and draws nothing.
class TextRecorder final : public QPaintEngine
{
public:
    TextRecorder()
        : QPaintEngine(AllFeatures)
    {
    }
    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& /*state*/) override {}
    void drawPixmap(const QRectF& /*target*/, const QPixmap& /*pixmap*/, const QRectF& /*source*/) override {}
    void drawPath(const QPainterPath& /*path*/) override {}
    void drawTextItem(const QPointF& position, const QTextItem& item) override
    {
        const QRectF box(position.x(), position.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        const QTransform place = painter()->deviceTransform();
        texts.append({item.text(), place.mapRect(box), systemClip()});
    }
    [[nodiscard]] Type type() const override { return User; }

    QList<DrawnText> texts;
};

class TextCanvas final : public QImage
{
public:
    using QImage::QImage;
    [[nodiscard]] QPaintEngine* paintEngine() const override { return &recorder; }

    mutable TextRecorder recorder;
};

/// Everything that the widget and its visible children draw as text.
inline QList<DrawnText> drawnTexts(QWidget& widget)
{
    TextCanvas canvas(widget.size(), QImage::Format_RGB32);
    widget.render(&canvas, {}, {}, QWidget::DrawChildren);
    return canvas.recorder.texts;
}

} // namespace Clipboard::Testing
