#pragma once

#include "Theme.h"

#include <QDir>
#include <QPainter>
#include <QTest>
#include <QWidget>

#include <algorithm>

namespace Clipboard::Testing {

/// Letters look the same on every machine: read before the first of them is drawn.
inline const bool usesTheFontsOfTests = qputenv("FONTCONFIG_FILE", TEST_FONTS);

/// How far a channel may be off: blending is not rounded alike on every processor.
constexpr int roundingDifference = 3;

/// How many pixels of two pictures of the same size are not of the same colour.
inline int differingPixels(const QImage& drawn, const QImage& reference)
{
    const auto isOff = [](int one, int other) { return std::abs(one - other) > roundingDifference; };
    int count = 0;
    for (int i = 0; i < drawn.width() * drawn.height(); ++i) {
        const QRgb one = drawn.pixel(i % drawn.width(), i / drawn.width());
        const QRgb other = reference.pixel(i % drawn.width(), i / drawn.width());
        const bool differs = isOff(qRed(one), qRed(other)) || isOff(qGreen(one), qGreen(other)) ||
                             isOff(qBlue(one), qBlue(other)) || isOff(qAlpha(one), qAlpha(other));
        count += differs ? 1 : 0;
    }
    return count;
}

/// The widget as it is drawn with that many device pixels to a logical one.
inline QImage drawing(QWidget& widget, qreal ratio)
{
    QImage image(widget.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image.convertToFormat(QImage::Format_ARGB32);
}

/// Waits until the widget is drawn as in the picture of that name in the folder References beside the test: one that a
/// person has compared with the design. With TESSALY_RENEW_PICTURES in the environment, what is drawn takes its place.
inline void expectPicture(const QString& name, QWidget& widget, qreal ratio = 1)
{
    Theme::install();
    const QDir references(QFINDTESTDATA("References"));
    const QString path = references.filePath(name + QStringLiteral(".png"));
    const QImage reference = QImage(path).convertToFormat(QImage::Format_ARGB32);
    QImage drawn;
    const auto isReference = [&] {
        drawn = drawing(widget, ratio);
        return drawn.size() == reference.size() && differingPixels(drawn, reference) == 0;
    };
    if (qEnvironmentVariableIsSet("TESSALY_RENEW_PICTURES")) {
        QTest::qWait(500); // nothing is judged here: what is read aside is to be in the picture
        QVERIFY(isReference() || drawn.save(path));
        return;
    }
    if (QTest::qWaitFor(isReference, patience))
        return;
    const QString found = QDir::temp().filePath(name + QStringLiteral(".drawn.png"));
    drawn.save(found);
    QFAIL(qPrintable(QStringLiteral("%1 is not drawn as in %2").arg(found, path)));
}

} // namespace Clipboard::Testing
