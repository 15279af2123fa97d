#include "Translations.h"

#include "AboutDialog.h"
#include "ClearHistoryDialog.h"
#include "CommandCard.h"
#include "DarkMenu.h"
#include "DrawnTexts.h"
#include "HoverTip.h"
#include "MetaCaption.h"
#include "PanelFixture.h"
#include "PseudoTranslator.h"
#include "StatusItem.h"
#include "TextBlock.h"
#include "ToastView.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <tuple>
#include <utility>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;

namespace {

/// The program in the language of a locale.
struct Language
{
    explicit Language(const QLocale& locale) { installTranslations(*QCoreApplication::instance(), locale); }
    ~Language() { qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator*>()); }
    Q_DISABLE_COPY_MOVE(Language)
};

/// The program in a language that takes a third more room.
struct LongLanguage
{
    LongLanguage() { QCoreApplication::installTranslator(&translator); }
    PseudoTranslator translator;
};

/// Entries in a script that no text of the program is in.
QList<ClipboardCore::ClipItem> foreignEntries(PanelFixture& f)
{
    QList<ClipboardCore::ClipItem> items{f.item(ClipType::text, u"жжж жж"_s),
                                         f.item(ClipType::link, u"http://жж.жж"_s),
                                         f.item(ClipType::image, u"/ж/ж.ж"_s),
                                         f.item(ClipType::color, u"#00FF00"_s),
                                         f.item(ClipType::code, u"{\nжж();\n}"_s),
                                         f.item(ClipType::file, u"/ж/жж"_s),
                                         f.item(ClipType::text, u"ж"_s.repeated(20'001))};
    items[0].isPinned = true;
    for (ClipboardCore::ClipItem& item : items)
        item.sourceApp = u"Жж"_s;
    return items;
}

/// That all texts of a widget that shows its surface there come from the catalogue and can be read.
void expectRoom(QWidget& widget, const QRect& surface)
{
    static const QRegularExpression fromUs(u"[A-Za-z]{2}"_s);
    static const QRegularExpression accents(u"[ÅåÇçÉéÎîÖöÛûŸÿÑñŠš]"_s);
    static const QRegularExpression notOurs(u"^(HEX|RGB|HSL|http|#)"_s);
    const QList<DrawnText> texts = drawnTexts(widget);
    QVERIFY(!texts.isEmpty());
    QStringList found;
    QString all;
    for (const DrawnText& drawn : texts) {
        all += drawn.text + u' ';
        if (drawn.text.contains(fromUs) && !drawn.text.contains(accents) && !drawn.text.contains(notOurs))
            found.append(u"not from the catalogue: %1"_s.arg(drawn.text));
        const QRectF seen = drawn.box.adjusted(1, 0, -1, 0); // a pixel for side bearings
        const QRectF room = drawn.clip.isEmpty() ? QRectF(surface) : QRectF(drawn.clip.boundingRect() & surface);
        if (drawn.text.contains(accents) && (seen.left() < room.left() || seen.right() > room.right()))
            found.append(u"cut at the side: %1"_s.arg(drawn.text));
        for (const DrawnText& other : texts) {
            if (&other < &drawn && other.box.adjusted(1, 4, -1, -4).intersects(drawn.box.adjusted(1, 4, -1, -4)))
                found.append(u"overlap: %1, %2"_s.arg(other.text, drawn.text));
        }
    }
    QVERIFY2(found.isEmpty(), qPrintable(found.join(u'\n')));
    QVERIFY2(all.count(u'«') == all.count(u'»'), qPrintable(u"one is elided: "_s + all));
}

} // namespace

class TranslationsTest final : public QObject
{
    Q_OBJECT
private slots:
    void speaksGermanInGermanPlaces();
    void panelHasRoomForLongerTexts();
    void sheetHasRoomForLongerTexts();
    void windowsHaveRoomForLongerTexts();
};

void TranslationsTest::speaksGermanInGermanPlaces()
{
    const QLocale austria(QLocale::German, QLocale::Austria);
    for (const auto& [locale, key, one, many] :
         {std::tuple(austria, u"Strg+K"_s, u"%1 Eintrag"_s, u"%1 Einträge"_s),
          std::tuple(QLocale(QLocale::English), u"Ctrl+K"_s, u"%1 item"_s, u"%1 items"_s),
          std::tuple(QLocale(QLocale::French), u"Ctrl+K"_s, u"%1 item"_s, u"%1 items"_s),
          std::tuple(QLocale::c(), u"Ctrl+K"_s, u"%1 item"_s, u"%1 items"_s)}) {
        const Language language(locale);
        QCOMPARE(QCoreApplication::translate("Clipboard::PanelFooter", "⌘K"), key);
        for (const int count : {0, 1, 2, 500})
            QCOMPARE(QCoreApplication::translate("Clipboard::PanelFooter", "%n item", nullptr, count),
                     (count == 1 ? one : many).arg(count));
    }
}

void TranslationsTest::panelHasRoomForLongerTexts()
{
    const LongLanguage language;
    PanelFixture f;
    f.catalogue = {{u"Escape as string literal"_s, {}}, {u"Copy shell-escaped path"_s, {}}, {u"Minify"_s, {}}};
    const auto items = foreignEntries(f);
    f.fill(items);
    QVERIFY(f.open());
    for (qsizetype entry = 0; entry <= items.size(); ++entry) {
        if (entry == items.size())
            f.model.setQuery(u"ж?"_s); // nothing is found
        else
            f.model.setSelectedID(items.at(entry).id);
        f.view()->sync();
        // Details are counted on another thread, long texts laid out later.
        if (entry < items.size() && items.at(entry).type == ClipType::text)
            QTRY_VERIFY(f.view()->findChild<MetaCaption*>()->parts().size() > 2);
        QTRY_VERIFY(std::ranges::all_of(f.view()->findChildren<TextBlock*>(), &TextBlock::isLaidOut));
        expectRoom(*f.view(), f.view()->rect());
    }
}

void TranslationsTest::sheetHasRoomForLongerTexts()
{
    const LongLanguage language;
    PanelFixture f;
    f.catalogue = {{u"Escape as string literal"_s, {}}, {u"Copy shell-escaped path"_s, {}}};
    f.fill(foreignEntries(f));
    QVERIFY(f.open());
    f.press(Qt::Key_K, Qt::ControlModifier);
    auto* card = f.view()->findChild<CommandCard*>();
    card->setGraphicsEffect(nullptr); // it would draw the card as one picture
    expectRoom(*card, card->cardRect());
    // An action goes by its own name and by the one that is shown.
    for (const QString& name : {u"shell"_s, u"šhéll"_s}) {
        f.model.setCmdkQuery(name);
        QCOMPARE(f.model.cmdkActions().size(), 1);
    }
    f.model.setCmdkQuery(u"жжж"_s);
    f.view()->sync();
    expectRoom(*card, card->cardRect());
}

void TranslationsTest::windowsHaveRoomForLongerTexts()
{
    const LongLanguage language;
    ClearHistoryDialog question(true);
    AboutDialog about(true, {});
    ToastView toast(
        QCoreApplication::translate("Clipboard::HistoryViewModel", "File no longer exists — removed from history"),
        true);
    toast.placeIn({0, 0, 1280, 800});
    QWidget window;
    window.resize(Theme::panelWidth, Theme::panelHeight);
    HoverTip tip(QCoreApplication::translate("Clipboard::PreviewButton", "Annotate"),
                 QCoreApplication::translate("Clipboard::PreviewButton", "⌘E"), {580, 400, 20, 20}, &window);
    const QTemporaryDir folder;
    const StatusItem item(LoginItem(folder.filePath(u"autostart"_s), u"/bin/true"_s), true);
    QList<QWidget*> shown{&question, &about, &toast, &tip};
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<DarkMenu*>(widget) != nullptr)
            shown.append(widget);
    }
    QCOMPARE(shown.size(), 5);
    for (QWidget* widget : std::as_const(shown)) {
        widget->resize(widget->sizeHint().isValid() ? widget->sizeHint() : widget->size());
        expectRoom(*widget, widget->rect());
    }
}

QTEST_MAIN(TranslationsTest)

#include "TranslationsTest.moc"
