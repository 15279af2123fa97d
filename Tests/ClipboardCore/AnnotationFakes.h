#pragma once

#include "Annotation/AnnotationSession.h"
#include "Annotation/DrawingContext.h"
#include "Annotation/Picture.h"

#include <QStringList>

#include <vector>

/// The drawing ports without a graphics library.
namespace AnnotationFakes {

/// A font of letters half as wide as it is high. Only Å rises above the line.
class BlockLayout final : public ClipboardCore::TextLayout
{
public:
    [[nodiscard]] ClipboardCore::FontMetrics metrics(ClipboardCore::TextFont of) const override
    {
        return {0.75 * of.size, 0.25 * of.size, 0.125 * of.size};
    }
    [[nodiscard]] double width(const QString& line, ClipboardCore::TextFont font) const override
    {
        return 0.5 * font.size * static_cast<double>(line.size());
    }
    [[nodiscard]] QRectF glyphBounds(const QString& line, ClipboardCore::TextFont font) const override
    {
        const double rise = (line.contains(u'Å') ? 2 : 0.75) * font.size;
        return {0, -rise, width(line, font), rise};
    }
};

/// Pixels in memory. What was drawn to make it, if it was drawn, is in `calls`.
class PlainPicture final : public ClipboardCore::Picture
{
public:
    explicit PlainPicture(QSize size, QStringList calls = {})
        : m_size(size)
        , m_calls(std::move(calls))
        , m_bytes(static_cast<size_t>(size.width()) * static_cast<size_t>(size.height()) * 4)
    {
    }

    [[nodiscard]] QSize size() const override { return m_size; }
    [[nodiscard]] std::span<const std::uint8_t> row(int y) const override
    {
        return std::span(m_bytes).subspan(at(y), width());
    }
    [[nodiscard]] std::span<std::uint8_t> row(int y) { return std::span(m_bytes).subspan(at(y), width()); }
    [[nodiscard]] std::unique_ptr<ClipboardCore::BitmapContext> rgbaContext(QSize size) const override;
    [[nodiscard]] const QStringList& calls() const { return m_calls; }

    mutable int contextsLeft = 1000; // how many there is memory for

private:
    [[nodiscard]] size_t width() const { return static_cast<size_t>(m_size.width()) * 4; }
    [[nodiscard]] size_t at(int y) const { return static_cast<size_t>(y) * width(); }

    QSize m_size;
    QStringList m_calls;
    std::vector<std::uint8_t> m_bytes;
};

/// Writes down what is drawn, one line a call.
class RecordingContext final : public ClipboardCore::BitmapContext
{
    using Color = ClipboardCore::AnnotationColor;

public:
    explicit RecordingContext(QSize size = {1, 1})
        : m_picture(std::make_shared<PlainPicture>(size))
    {
    }
    [[nodiscard]] const QStringList& calls() const { return m_calls; }

    void save() override { add("save"); }
    void restore() override { add("restore"); }
    void translate(QPointF by) override { add("translate", by.x(), by.y()); }
    void scale(double x, double y) override { add("scale", x, y); }
    void clip(const QRectF& to) override { add("clip", to); }
    void setAlpha(double alpha) override { add("alpha", alpha); }
    void fillRectangle(const QRectF& rect, const Color& color) override { add("fill", color.id, rect); }
    void fillRoundedRectangle(const QRectF& rect, double radius, const Color& color) override
    {
        add("fillRounded", color.id, rect, radius);
    }
    void fillEllipse(const QRectF& in, const Color& color) override { add("fillEllipse", color.id, in); }
    void fillPolygon(std::span<const QPointF> corners, const Color& color) override
    {
        QStringList points;
        for (const QPointF corner : corners)
            points += line(corner.x(), corner.y());
        add("fillPolygon", color.id, points.join(QLatin1Char(' ')));
    }
    void strokeRectangle(const QRectF& rect, const ClipboardCore::Pen& pen) override
    {
        add("stroke", pen.color.id, pen.width, rect);
    }
    void strokeLine(QPointF from, QPointF to, const ClipboardCore::Pen& pen) override
    {
        add("strokeLine", pen.color.id, pen.width, pen.cap == ClipboardCore::Pen::Cap::round ? "round" : "butt",
            from.x(), from.y(), to.x(), to.y());
    }
    void drawPicture(const ClipboardCore::Picture& picture, const QRectF& into, Interpolation interpolation) override
    {
        add("picture", picture.size().width(), picture.size().height(), into,
            interpolation == Interpolation::smooth ? "smooth" : "blocks");
    }
    void drawText(const ClipboardCore::TextLine& text, QPointF baseline) override
    {
        add("text", text.text, text.font.size, text.color.id, baseline.x(), baseline.y());
    }
    [[nodiscard]] std::span<std::uint8_t> row(int y) override { return m_picture->row(y); }
    [[nodiscard]] std::shared_ptr<const ClipboardCore::Picture> takePicture() override
    {
        return std::make_shared<PlainPicture>(m_picture->size(), m_calls);
    }

private:
    static QString word(const char* text) { return QString::fromLatin1(text); }
    static QString word(QLatin1StringView text) { return text; }
    static QString word(const QString& text) { return text; }
    static QString word(double number) { return QString::number(number, 'g', 6); }
    static QString word(const QRectF& rect)
    {
        return QStringLiteral("%1,%2+%3x%4")
            .arg(word(rect.x()), word(rect.y()), word(rect.width()), word(rect.height()));
    }
    template <typename... Words>
    static QString line(const Words&... words)
    {
        return QStringList{word(words)...}.join(QLatin1Char(' '));
    }
    template <typename... Words>
    void add(const Words&... words)
    {
        m_calls += line(words...);
    }

    std::shared_ptr<PlainPicture> m_picture;
    QStringList m_calls;
};

inline std::unique_ptr<ClipboardCore::BitmapContext> PlainPicture::rgbaContext(QSize size) const
{
    if (contextsLeft == 0)
        return nullptr;
    --contextsLeft;
    return std::make_unique<RecordingContext>(size);
}

/// A session over an empty picture, in red and medium: stroke 4, counter 28, font 20 as long as no side passes 1000.
inline ClipboardCore::AnnotationSession session(QSize size = {200, 100})
{
    return {std::make_shared<PlainPicture>(size), ClipboardCore::AnnotationPalette::red,
            ClipboardCore::AnnotationSize::medium, std::make_shared<BlockLayout>()};
}

} // namespace AnnotationFakes
