// What the annotation editor costs on a large picture full of marks: the result, and the copy for pixelated areas.
// One line each: name, value, unit, goal, separated by tabs.

#include "../Figures.h"
#include "QtGraphics.h"

#include "Annotation/AnnotationSession.h"

#include <QApplication>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Figures::median;
using Figures::report;

namespace {

constexpr QSize pictureSize(3840, 2160);
int runs = 15;

QImage picture()
{
    QImage image(pictureSize, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = qRgb(x ^ y, x / 15, y / 9);
    }
    return image;
}

/// Twenty marks all over the picture, of every kind and size; two of them are pixelated areas.
void addMarks(AnnotationSession& session)
{
    constexpr std::array tools{AnnotationTool::arrow, AnnotationTool::rectangle, AnnotationTool::text,
                               AnnotationTool::highlighter, AnnotationTool::counter};
    for (size_t i = 0; i < 18; ++i) {
        const QPointF at(200.0 * static_cast<double>(i), 100 + 330.0 * static_cast<double>(i % 6));
        session.setSize(allAnnotationSizes.at(i % allAnnotationSizes.size()));
        session.setColor(AnnotationPalette::colors.at(i % AnnotationPalette::colors.size()));
        session.chooseTool(tools.at(i % tools.size()));
        session.place(at);
        session.setText(u"Leave at side door,\nplease"_s);
        session.place(at, at + QPointF(420, 240));
    }
    session.chooseTool(AnnotationTool::pixelate);
    session.place(QPointF(300, 300), QPointF(1500, 900));
    session.place(QPointF(2000, 1100), QPointF(3700, 2000));
}

AnnotationSession document()
{
    const auto textLayout = std::make_shared<const QtTextLayout>();
    AnnotationSession session(std::make_shared<QtPicture>(picture(), textLayout), AnnotationPalette::red,
                              AnnotationSize::medium, textLayout);
    addMarks(session);
    return session;
}

void measureResult()
{
    const AnnotationSession session = document();
    report(u"editor: pixelated copy of 3840 × 2160"_s,
           median(runs, [&] { static_cast<void>(session.makePixelatedPicture()); }), u"-"_s);
    std::shared_ptr<const Picture> result;
    report(u"editor: flatten 3840 × 2160 with 20 marks"_s, median(runs, [&] { result = session.flatten(); }),
           u"≤ 120"_s);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(u"--short"_s))
        runs = 2;
    measureResult();
    return 0;
}
