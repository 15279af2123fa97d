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

/// What is wrong with the texts of a widget that shows its surface there; empty when all can be read.
QString faults(QWidget& widget, const QRect& surface)
{
    static const QRegularExpression fromUs(u"[A-Za-z]{2}"_s);
    static const QRegularExpression accents(u"[ÅåÇçÉéÎîÖöÛûŸÿÑñŠš]"_s);
    static const QRegularExpression notOurs(u"^(HEX|RGB|HSL|http|#)"_s);
    const QList<DrawnText> texts = drawnTexts(widget);
    QStringList found;
    if (texts.isEmpty())
        found.append(u"nothing was drawn"_s);
    qsizetype open = 0;
    for (const DrawnText& drawn : texts) {
        open += drawn.text.count(u'«') - drawn.text.count(u'»');
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
    if (open != 0) {
        found.append(u"elided, one of:"_s);
        std::ranges::transform(texts, std::back_inserter(found), &DrawnText::text);
    }
    return found.join(u'\n');
}

} // namespace

class TranslationsTest final : public QObject
{
    Q_OBJECT
private slots:
    void countsInItsOwnPlural();
    void speaksGermanInGermanPlaces();
    void panelHasRoomForLongerTexts_data();
    void panelHasRoomForLongerTexts();
    void sheetHasRoomForLongerTexts();
    void windowsHaveRoomForLongerTexts();
};

void TranslationsTest::countsInItsOwnPlural()
{
    for (const auto& [locale, one, many] : {std::tuple(QLocale::English, u"%1 item"_s, u"%1 items"_s),
                                            std::tuple(QLocale::German, u"%1 Eintrag"_s, u"%1 Einträge"_s)}) {
        const Language language{QLocale(locale)};
        for (const auto& [context, source] :
             {std::pair("Clipboard::PanelFooter", "%n item"), std::pair("Clipboard::FilterChip", "%n items")}) {
            for (const int count : {0, 1, 2, 500})
                QCOMPARE(QCoreApplication::translate(context, source, nullptr, count),
                         (count == 1 ? one : many).arg(count));
        }
    }
}

void TranslationsTest::speaksGermanInGermanPlaces()
{
    const auto paste = [] { return QCoreApplication::translate("Clipboard::PreviewButton", "Paste"); };
    const auto sheetKey = [] { return QCoreApplication::translate("Clipboard::PanelFooter", "⌘K"); };
    for (const auto& [locale, text, key] :
         {std::tuple(QLocale(QLocale::German, QLocale::Austria), u"Einfügen"_s, u"Strg+K"_s),
          std::tuple(QLocale(QLocale::French), u"Paste"_s, u"Ctrl+K"_s),
          std::tuple(QLocale::c(), u"Paste"_s, u"Ctrl+K"_s)}) {
        const Language language(locale);
        QCOMPARE(paste(), text);
        QCOMPARE(sheetKey(), key);
    }
}

void TranslationsTest::panelHasRoomForLongerTexts_data()
{
    QTest::addColumn<int>("entry");
    int entry = 0;
    for (const char* name : {"text", "link", "picture", "color", "code", "file", "long text"})
        QTest::newRow(name) << entry++;
    QTest::newRow("nothing found") << -1;
}

void TranslationsTest::panelHasRoomForLongerTexts()
{
    QFETCH(const int, entry);
    const LongLanguage language;
    PanelFixture f;
    f.catalogue = {{u"Escape as string literal"_s, {}}, {u"Copy shell-escaped path"_s, {}}, {u"Minify"_s, {}}};
    f.fill(foreignEntries(f));
    QVERIFY(f.open());
    if (entry < 0)
        f.model.setQuery(u"ж?"_s);
    else
        f.model.setSelectedID(f.entry(entry).id);
    f.view()->sync();
    // Details are counted on another thread, long texts laid out later.
    if (entry >= 0 && f.entry(entry).type == ClipType::text)
        QTRY_VERIFY(f.view()->findChild<MetaCaption*>()->parts().size() > 2);
    QTRY_VERIFY(std::ranges::all_of(f.view()->findChildren<TextBlock*>(), &TextBlock::isLaidOut));
    const QString found = faults(*f.view(), f.view()->rect());
    QVERIFY2(found.isEmpty(), qPrintable(found));
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
    const QString found = faults(*card, card->cardRect());
    QVERIFY2(found.isEmpty(), qPrintable(found));
    // An action goes by its own name and by the one that is shown.
    for (const QString& name : {u"shell"_s, u"šhéll"_s}) {
        f.model.setCmdkQuery(name);
        QCOMPARE(f.model.cmdkActions().size(), 1);
    }
    f.model.setCmdkQuery(u"жжж"_s);
    f.view()->sync();
    QVERIFY2(faults(*card, card->cardRect()).isEmpty(), qPrintable(faults(*card, card->cardRect())));
}

void TranslationsTest::windowsHaveRoomForLongerTexts()
{
    const LongLanguage language;
    ClearHistoryDialog question(true);
    AboutDialog about(true);
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
        const QString found = faults(*widget, widget->rect());
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }
}

QTEST_MAIN(TranslationsTest)

#include "TranslationsTest.moc"
