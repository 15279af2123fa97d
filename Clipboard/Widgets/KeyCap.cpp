#include "KeyCap.h"

#include "Fonts.h"
#include "Painting.h"
#include "TintedIcon.h"

#include <QList>

#include <algorithm>

namespace Clipboard::KeyCap {

namespace {

constexpr int iconSize = 12;
constexpr qreal iconStroke = 2;
constexpr int textPadding = 5;
constexpr int iconPadding = 4;
constexpr int singleIconPadding = 3;
constexpr int iconGap = 1;
constexpr int textToIconGap = 3;

struct Part
{
    QString text;       // empty for a drawing
    QLatin1String icon; // empty for a text
    [[nodiscard]] bool isIcon() const { return !icon.isEmpty(); }
    [[nodiscard]] qreal width() const { return isIcon() ? iconSize : Fonts::width(Fonts::badge, text); }
};

QLatin1String iconFor(QChar sign)
{
    switch (sign.unicode()) {
    case u'↑':
        return QLatin1String("up");
    case u'↓':
        return QLatin1String("down");
    case u'⏎':
        return QLatin1String("return");
    case u'⌫':
        return QLatin1String("backspace");
    default:
        return {};
    }
}

QList<Part> split(const QString& keys)
{
    QList<Part> parts;
    for (const QChar character : keys) {
        const QLatin1String icon = iconFor(character);
        if (!icon.isEmpty() || parts.isEmpty() || parts.last().isIcon())
            parts.append({icon.isEmpty() ? QString(character) : QString(), icon});
        else
            parts.last().text += character;
    }
    return parts;
}

int padding(const QList<Part>& parts, const Part& outermost)
{
    if (!outermost.isIcon())
        return textPadding;
    return parts.size() == 1 ? singleIconPadding : iconPadding;
}

int gap(const Part& a, const Part& b)
{
    return a.isIcon() && b.isIcon() ? iconGap : textToIconGap;
}

qreal contentWidth(const QList<Part>& parts)
{
    qreal width = 0;
    for (qsizetype i = 0; i < parts.size(); ++i)
        width += parts[i].width() + (i > 0 ? gap(parts[i - 1], parts[i]) : 0);
    return width;
}

qreal capWidth(const QList<Part>& parts)
{
    const qreal padded = contentWidth(parts) + padding(parts, parts.first()) + padding(parts, parts.last());
    return std::max<qreal>(Theme::keyCapHeight, padded);
}

} // namespace

QSizeF size(const QString& keys)
{
    const QList<Part> parts = split(keys);
    return {parts.isEmpty() ? 0 : capWidth(parts), Theme::keyCapHeight};
}

void draw(QPainter& painter, const QPointF& topLeft, const QString& keys, const Look& look)
{
    const QList<Part> parts = split(keys);
    if (parts.isEmpty())
        return;
    const QRectF cap(topLeft, QSizeF(capWidth(parts), Theme::keyCapHeight));
    Painting::roundedFill(painter, cap, Theme::keyCapRadius, look.fill, look.line);
    const bool tight = cap.width() > Theme::keyCapHeight;
    qreal x = tight ? cap.x() + padding(parts, parts.first()) : cap.center().x() - contentWidth(parts) / 2;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const Part& part = parts[i];
        if (i > 0)
            x += gap(parts[i - 1], part);
        const QRectF box(x, cap.y(), part.width() + 1, cap.height());
        if (part.isIcon())
            drawIcon(painter, box.adjusted(0, 0, -1, 0), {part.icon, iconSize, look.text, iconStroke});
        else
            Painting::textLine(painter, box, Fonts::badge, look.text, part.text);
        x += part.width();
    }
}

} // namespace Clipboard::KeyCap
