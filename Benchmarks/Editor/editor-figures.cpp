// What the annotation editor costs on a large picture full of marks: the result, the copy for pixelated areas, and a
// frame of each kind of drag. One line each: name, value, unit, goal, separated by tabs.

#include "../Figures.h"
#include "CanvasPictures.h"
#include "CanvasView.h"
#include "QtGraphics.h"

#include "Annotation/EditorLifecycle.h"

#include <QApplication>
#include <QMouseEvent>
#include <QThread>

using namespace Clipboard;
using namespace ClipboardCore;
using namespace Qt::StringLiterals;
using Figures::median;
using Figures::report;

namespace {

constexpr QSize pictureSize(3840, 2160);
constexpr QSize fullScreen(3840, 2160);
constexpr QSize window(1400, 900);
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

/// The editor's canvas in a window, as the mouse finds it.
class Canvas final
{
public:
    explicit Canvas(QSize size)
        : m_view(m_lifecycle, std::make_shared<const QtTextLayout>(), {}, nullptr)
    {
        static_cast<void>(m_lifecycle.handle(EditorEvents::Open{document(), {}}));
        QObject::connect(&m_view, &CanvasView::edited, &m_view, &CanvasView::sync);
        m_view.resize(size);
        m_view.sync();
        m_view.show();
        waitForPictures();
    }

    void choose(AnnotationTool tool)
    {
        m_lifecycle.edit([tool](AnnotationSession& session) { session.chooseTool(tool); });
        m_view.sync();
        QCoreApplication::processEvents();
    }

    /// The median of the frames of a drag between two points of the picture, from the mouse to the last pixel.
    double drag(QPointF from, QPointF to)
    {
        send(QEvent::MouseButtonPress, from);
        int step = 0;
        const double time = median(runs, [&] {
            ++step;
            send(QEvent::MouseMove, from + (to - from) * step / runs);
        });
        send(QEvent::MouseButtonRelease, to);
        return time;
    }

private:
    void waitForPictures()
    {
        auto& pictures = *m_view.findChild<CanvasPictures*>();
        const QSize shown = m_view.viewport().devicePixels();
        while (!pictures.pixelated() || pictures.scaled(shown).size() != shown) {
            QCoreApplication::processEvents();
            QThread::msleep(1);
        }
        QCoreApplication::processEvents();
    }

    void send(QEvent::Type type, QPointF at)
    {
        const bool isMove = type == QEvent::MouseMove;
        const QPointF place = m_view.viewport().toCanvas(at);
        QMouseEvent event(type, place, place, isMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
        QCoreApplication::sendEvent(&m_view, &event);
        QCoreApplication::sendPostedEvents(); // painting
    }

    EditorLifecycle m_lifecycle;
    CanvasView m_view;
};

void measureDrags(const QString& where, QSize size)
{
    Canvas canvas(size);
    const auto row = [&](const QString& what, QPointF from, QPointF to) {
        report(u"editor: a frame of dragging %1, %2"_s.arg(what, where), canvas.drag(from, to), u"≤ 16"_s);
    };
    canvas.choose(AnnotationTool::arrow);
    row(u"a new arrow"_s, {10, 2100}, {3800, 50});
    row(u"a pixelated area"_s, {2900, 1500}, {2700, 1400}); // selected by the press
    canvas.choose(AnnotationTool::highlighter);
    row(u"a new highlight"_s, {3800, 2100}, {50, 60});
    canvas.choose(AnnotationTool::crop);
    row(u"the crop"_s, {1, 1}, {1500, 900});
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
    measureDrags(u"in a window"_s, window);
    measureDrags(u"on a screen of 3840 × 2160"_s, fullScreen);
    return 0;
}
