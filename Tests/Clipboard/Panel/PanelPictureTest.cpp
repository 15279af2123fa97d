#include "PanelFixture.h"
#include "ReferencePicture.h"
#include "Rows.h"

#include <QKeySequence>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipType;

/// The panel as it looks, beside pictures that were compared with the design.
class PanelPictureTest final : public QObject
{
    Q_OBJECT
private slots:
    void looksAsDesigned();
};

namespace {

void fill(PanelFixture& f)
{
    const QString picture = f.folder.filePath(u"picture.png"_s);
    QImage tones(240, 160, QImage::Format_RGB32);
    for (int y = 0; y < tones.height(); ++y) {
        for (int x = 0; x < tones.width(); ++x)
            tones.setPixel(x, y, qRgb(x, y, 128));
    }
    tones.save(picture);
    f.fill(
        {f.item(ClipType::text, u"Low tide at 06:14. "_s + u"Bring boots, the long ropes and a lamp. "_s.repeated(40)),
         f.item(ClipType::link, u"https://fieldnotes.example/2026/tide-tables?station=harbour"_s),
         f.item(ClipType::color, u"#E2725B"_s),
         f.item(ClipType::code, u"const tide = (h) => {\n    return h % 12 + 0.4; // hours\n};"_s),
         f.item(ClipType::file, u"/nowhere/charts of the northern coast, revised and corrected.pdf"_s),
         f.item(ClipType::file, u"/usr/"_s), f.item(ClipType::image, picture), f.item(ClipType::text, u"שלום עולם"_s),
         f.item(ClipType::text, u"a\tb\n"_s.repeated(9))});
    f.store.togglePin(f.store.items().at(3).id);
    f.model.refresh();
}

void checkPicture(const char* name, const QString& keys, qreal ratio, bool isCompositing)
{
    PanelFixture f;
    f.newest = ClipboardCore::currentTime() + 3600; // all of them were copied just now
    f.windows.compositing = isCompositing;
    f.catalogue = {f.action(u"Slugify"_s), f.action(u"QR code"_s), f.action(u"Copy without the trackers"_s)};
    if (!keys.startsWith(u"Empty"))
        fill(f);
    if (QByteArrayView(name) == "several files") {
        ClipboardCore::ClipItem again = f.store.items().at(4);
        again.furtherFiles = 5;
        static_cast<void>(f.store.add(again));
        f.model.refresh();
    }
    QVERIFY(f.open());
    for (const QString& key : keys.split(u' ', Qt::SkipEmptyParts)) {
        if (key.size() > 1 && key.front().isLower())
            f.type(key);
        else if (key != u"Empty")
            f.press(QKeySequence(key)[0].key(), QKeySequence(key)[0].keyboardModifiers());
    }
    f.view()->sync();
    expectPicture(u"panel, "_s + QString::fromLatin1(name), f.panel, ratio);
}

} // namespace

void PanelPictureTest::looksAsDesigned()
{
    checkRows(checkPicture, {{"code, pinned", {}, 1, true},
                             {"text", u"Down"_s, 1, true},
                             {"link", u"Down Down Right"_s, 1, false},
                             {"colour", u"Down Down Down"_s, 1, true},
                             {"file that is gone", u"Down Down Down Down"_s, 1, true},
                             {"folder", u"Down Down Down Down Down"_s, 1, true},
                             {"several files", u"Down Down Down"_s, 1, true},
                             {"picture", u"Down Down Down Down Down Down"_s, 1.5, true},
                             {"right to left", u"End Up"_s, 1, true},
                             {"search", u"tide"_s, 1, true},
                             {"chips", u"Up Right Right"_s, 2, true},
                             {"buttons", u"Right Down Down Right"_s, 1, true},
                             {"sheet", u"Ctrl+K Down"_s, 2, true},
                             {"sheet with a search", u"Ctrl+K qr"_s, 1, true},
                             {"nothing found", u"zz-zz"_s, 1, true},
                             {"empty", u"Empty"_s, 1, true}});
}

QTEST_MAIN(PanelPictureTest)

#include "PanelPictureTest.moc"
