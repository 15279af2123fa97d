#include "EditorFixture.h"

#include "ReferencePicture.h"
#include "Rows.h"

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

/// The editor as it looks, beside pictures that were compared with the design.
class EditorPictureTest final : public QObject
{
    Q_OBJECT
private slots:
    void looksAsDesigned();
};

namespace {

QImage landscape()
{
    QImage image(400, 300, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 255 / 400, 160 - y / 4, (x / 8 + y / 8) % 2 == 0 ? 190 : 220));
    }
    return image;
}

/// Each tool once, in colours and sizes of its own.
void drawEverything()
{
    using E = EditorFixture;
    E::keys(u"A 1"_s);
    E::drag({20, 20}, {120, 60});
    E::keys(u"R 2 ]"_s);
    E::drag({140, 20}, {240, 80});
    E::keys(u"H 3"_s);
    E::drag({260, 20}, {380, 80});
    E::keys(u"P"_s);
    E::drag({20, 100}, {120, 180});
    E::keys(u"N 5 [ ["_s);
    for (const int x : {150, 190, 230})
        E::click(QPointF(x, 130));
    E::keys(u"] ]"_s);
    E::click({290, 130});
    E::keys(u"A 6"_s);
    E::drag({350, 150}, {356, 146});
    E::keys(u"T 7"_s);
    E::click({30, 210});
    E::type(u"Low tide"_s);
    E::keys(u"Return"_s);
    E::type(u"at six"_s);
}

void checkPicture(const char* name, QSize size, qreal ratio, const QString& keys, const QRect& drag)
{
    EditorFixture f;
    f.open(landscape());
    f.window()->setMinimumSize({}); // this screen is smaller than any
    f.window()->resize(size);
    drawEverything();
    f.keys(keys);
    if (!drag.isNull())
        f.drag(drag.topLeft(), drag.bottomRight());
    expectPicture(u"editor, "_s + QString::fromLatin1(name), *f.window(), ratio);
}

} // namespace

void EditorPictureTest::looksAsDesigned()
{
    const QSize usual(1100, 640);
    checkRows(checkPicture, {{"typing", usual, 1, u"Shift+Left Shift+Left"_s, {}},
                             {"label selected", usual, 2, u"Escape"_s, {}},
                             {"rectangle selected", usual, 1, u"Escape R"_s, {140, 50, 11, 11}},
                             {"crop", usual, 1, u"Escape C"_s, {0, 150, 100, 0}},
                             {"magnified", usual, 1, u"Escape Ctrl++ Ctrl++ Ctrl++ Ctrl++"_s, {}},
                             {"narrow", {880, 500}, 1.5, u"Escape Tab Right"_s, {}},
                             {"question", usual, 1, u"Escape Escape Escape Tab"_s, {}}});
}

QTEST_MAIN(EditorPictureTest)
#include "EditorPictureTest.moc"
