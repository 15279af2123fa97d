#include "PanelFixture.h"

#include "ClearButton.h"
#include "CommandRow.h"
#include "CommandSheet.h"
#include "HistoryList.h"

#include <algorithm>
#include <random>
#include <utility>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;

namespace {

struct Entry
{
    QString text;
    int time = 0;
    bool isPinned = false;
};

/// Long texts have other actions than short ones.
QStringList labelsOf(const QString& text)
{
    return text.size() > 4 ? QStringList{u"Clean whitespace"_s, u"Slugify"_s, u"QR code"_s}
                           : QStringList{u"Copy path"_s, u"Decode Base64"_s};
}

/// The panel as a user thinks of it: lists of texts, and a place in them.
struct PlainPanel
{
    QList<Entry> entries; // in their order
    QList<QList<Entry>> removed;
    QString query;
    QString selected; // empty for none
    PanelFocusTarget focus;
    bool hasSheet = false;
    QString sheetQuery;
    int sheetIndex = 0;
    QStringList ran;
    int pastes = 0;
    int clock = 0;

    [[nodiscard]] QStringList visible() const
    {
        QStringList texts;
        for (const Entry& entry : entries)
            texts.append(entry.text);
        return texts.filter(query);
    }
    [[nodiscard]] QStringList labels() const { return labelsOf(selected).filter(sheetQuery, Qt::CaseInsensitive); }
    [[nodiscard]] auto find(const QString& text) { return std::ranges::find(entries, text, &Entry::text); }

    void select(const QString& text)
    {
        sheetIndex = selected == text ? sheetIndex : 0;
        selected = text;
        focus.reset();
        hasSheet &= !selected.isEmpty();
    }
    void settle()
    {
        std::ranges::stable_sort(entries, [](const Entry& a, const Entry& b) {
            return a.isPinned != b.isPinned ? a.isPinned : a.time > b.time;
        });
        if (const QStringList texts = visible(); !texts.contains(selected))
            select(texts.value(0));
    }
    void type(const QString& text)
    {
        if (std::exchange(hasSheet ? sheetQuery : query, text) == text)
            return;
        sheetIndex = 0;
        settle();
        focus.reset();
    }
    void move(int delta)
    {
        const QStringList texts = hasSheet ? labels() : visible();
        if (texts.isEmpty())
            return;
        const qsizetype from = hasSheet ? sheetIndex : texts.indexOf(selected);
        const qsizetype to = (from + delta + texts.size()) % texts.size();
        if (hasSheet)
            sheetIndex = static_cast<int>(to);
        else
            select(texts.at(to));
    }
    void copied(const QString& text)
    {
        if (find(text) == entries.end())
            entries.append({text});
        find(text)->time = ++clock;
        settle();
    }
    void run(const QStringList& labels, qsizetype index)
    {
        if (index < labels.size())
            ran.append(labels.at(index) + u" of "_s + selected);
        hasSheet = false;
    }
    void runListed(qsizetype index)
    {
        if (index < labels().size())
            run(labels(), index);
    }
    void enter()
    {
        if (hasSheet || focus)
            return run(hasSheet ? labels() : labelsOf(selected), hasSheet ? sheetIndex : 0);
        pastes += selected.isEmpty() ? 0 : 1;
        copy();
    }
    void escape()
    {
        if (hasSheet && sheetQuery.isEmpty())
            hasSheet = false;
        else if (hasSheet || !focus)
            type({});
        focus.reset();
    }
    void toggleSheet()
    {
        hasSheet = !hasSheet && !selected.isEmpty();
        sheetQuery.clear();
        sheetIndex = 0;
    }
    void copy()
    {
        if (!hasSheet && !selected.isEmpty())
            copied(selected);
    }
    void pin()
    {
        if (const auto entry = find(selected); entry != entries.end())
            entry->isPinned = !entry->isPinned;
        settle();
    }
    void remove()
    {
        const auto entry = find(selected);
        if (entry == entries.end())
            return;
        const QStringList texts = visible();
        const qsizetype at = texts.indexOf(selected);
        removed.append({*entry});
        entries.erase(entry);
        select(texts.value(at + 1, texts.value(at - 1)));
    }
    void bringBack()
    {
        const QList<Entry> back = removed.takeLast();
        const bool isFirstNew = find(back.first().text) == entries.end();
        for (const Entry& entry : back) {
            if (const auto present = find(entry.text); present != entries.end())
                present->isPinned |= entry.isPinned;
            else
                entries.append(entry);
        }
        settle();
        if (isFirstNew && visible().contains(back.first().text))
            select(back.first().text);
    }
};

struct Press
{
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    void (*effect)(PlainPanel& panel);
};

const auto nothing = [](PlainPanel&) {};
const auto first = [](PlainPanel& p) { p.select(p.visible().value(0)); };
const auto last = [](PlainPanel& p) { p.select(p.visible().value(p.visible().size() - 1)); };
const auto eraseLetter = [](PlainPanel& p) {
    QString text = p.hasSheet ? p.sheetQuery : p.query;
    text.chop(1);
    p.type(text);
};
const auto eraseWord = [](PlainPanel& p) { p.hasSheet || !p.query.isEmpty() ? p.type({}) : p.remove(); };

const QList<Press> keysAnywhere{
    {Qt::Key_Down, {}, [](PlainPanel& p) { p.move(1); }},
    {Qt::Key_Down, {}, [](PlainPanel& p) { p.move(1); }},
    {Qt::Key_Up, {}, [](PlainPanel& p) { p.move(-1); }},
    {Qt::Key_Backspace, {}, eraseLetter},
    {Qt::Key_Backspace, Qt::ControlModifier, eraseWord},
    {Qt::Key_Escape, {}, [](PlainPanel& p) { p.escape(); }},
    {Qt::Key_Return, {}, [](PlainPanel& p) { p.enter(); }},
    {Qt::Key_Enter, Qt::KeypadModifier, [](PlainPanel& p) { p.enter(); }},
    {Qt::Key_K, Qt::ControlModifier, [](PlainPanel& p) { p.toggleSheet(); }},
    {Qt::Key_C, Qt::ControlModifier, [](PlainPanel& p) { p.copy(); }},
    {Qt::Key_Tab, {}, nothing},
    {Qt::Key_Backtab, Qt::ShiftModifier, nothing},
};
const QList<Press> keysInSheet{
    {Qt::Key_1, Qt::ControlModifier, [](PlainPanel& p) { p.runListed(0); }},
    {Qt::Key_2, Qt::ControlModifier, [](PlainPanel& p) { p.runListed(1); }},
    {Qt::Key_3, Qt::ControlModifier, [](PlainPanel& p) { p.runListed(2); }},
};
const QList<Press> keysWithoutSheet{
    {Qt::Key_Right, {}, [](PlainPanel& p) { p.focus = FocusKey::action(0); }},
    {Qt::Key_Home, {}, first},
    {Qt::Key_PageUp, {}, first},
    {Qt::Key_Up, Qt::ControlModifier, first},
    {Qt::Key_Up, Qt::AltModifier, first},
    {Qt::Key_End, {}, last},
    {Qt::Key_PageDown, {}, last},
    {Qt::Key_Down, Qt::ControlModifier, last},
    {Qt::Key_Down, Qt::AltModifier, last},
    {Qt::Key_Down, Qt::ShiftModifier, nothing},
    {Qt::Key_PageUp, Qt::ShiftModifier, nothing},
    {Qt::Key_F, Qt::ControlModifier, [](PlainPanel& p) { p.focus.reset(); }},
    {Qt::Key_P, Qt::ControlModifier, [](PlainPanel& p) { p.pin(); }},
    {Qt::Key_Delete, Qt::ShiftModifier, [](PlainPanel& p) { p.remove(); }},
    {Qt::Key_Z, Qt::ControlModifier, [](PlainPanel& p) { p.bringBack(); }},
    {Qt::Key_Z, Qt::ControlModifier, [](PlainPanel& p) { p.bringBack(); }},
};

/// A stream of what users do, to the panel and to its plain likeness.
class Stream
{
public:
    explicit Stream(unsigned seed)
        : m_random(seed)
    {
        m_f.catalogueOf = [](const ClipItem& item) {
            QList<ClipboardCore::SmartAction> actions;
            for (const QString& label : labelsOf(item.content.toString()))
                actions.append({label, PanelFixture::action(label + u" of "_s + item.content.toString()).run});
            return actions;
        };
        QObject::connect(&m_f.panel, &FloatingPanel::closed, &m_f.model, &HistoryViewModel::forgetRemoved);
        for (int i = 0; i < 12; ++i)
            copyOutside();
        reopen();
    }

    void step()
    {
        static constexpr std::array others{&Stream::type, &Stream::type, &Stream::copyOutside};
        static constexpr std::array inPanel{&Stream::clickRow, &Stream::clickRow, &Stream::reopen};
        static constexpr std::array inSheet{&Stream::clickSheetRow, &Stream::clickSheetRow, &Stream::removeBehind};
        const QList<Press>& keysHere = m_p.hasSheet ? keysInSheet : keysWithoutSheet;
        const QList<Press>& keys = below(m_p.hasSheet ? 5 : 2) == 0 ? keysHere : keysAnywhere;
        const auto kind = below(4);
        if (kind >= 2)
            press(keys.at(below(keys.size())));
        else
            (this->*(kind == 0 ? others : m_p.hasSheet ? inSheet : inPanel)[below(3)])();
        m_f.view()->sync();
    }
    [[nodiscard]] bool ranAll() const { return m_f.effects.size() == m_p.ran.size(); }
    [[nodiscard]] QStringList panel() const
    {
        const HistoryViewModel& model = m_f.model;
        QStringList rows;
        for (const auto* row : m_f.view()->findChildren<CommandRow*>())
            rows.append(row->text());
        QStringList ran;
        for (const auto& effect : m_f.effects)
            ran.append(effect.payload.toString());
        const bool isSheetSeen = m_f.view()->findChild<CommandSheet*>()->isVisible();
        const bool isInView = !model.selectedID() || model.frames.contains(FocusKey::row(*model.selectedID()));
        return {m_f.visible().join(u' '),
                m_f.selected(),
                model.query(),
                m_f.typed(),
                isSheetSeen ? rows.join(u", ") + QString::number(model.cmdkIndex()) : u"no sheet"_s,
                ran.join(u", "),
                model.focus() == m_p.focus ? u"focus"_s : QString(),
                isInView ? u"in view"_s : QString(),
                m_f.view()->activeField()->hasFocus() ? u"keyboard"_s : QString(),
                QString::number(m_f.closeRequests)};
    }
    [[nodiscard]] QStringList likeness() const
    {
        return {m_p.visible().join(u' '),
                m_p.selected,
                m_p.query,
                m_p.hasSheet ? m_p.sheetQuery : m_p.query,
                m_p.hasSheet ? m_p.labels().join(u", ") + QString::number(m_p.sheetIndex) : u"no sheet"_s,
                m_p.ran.join(u", "),
                u"focus"_s,
                u"in view"_s,
                u"keyboard"_s,
                QString::number(m_p.pastes)};
    }
    [[nodiscard]] QByteArray story() const
    {
        return m_story.last(std::min<qsizetype>(m_story.size(), 15)).join(u", ").toUtf8();
    }

private:
    qsizetype below(qsizetype count) { return static_cast<qsizetype>(m_random() % static_cast<unsigned>(count)); }
    void press(const Press& press)
    {
        const bool isFirst = m_p.selected == m_p.visible().value(0);
        const bool isVertical =
            press.modifiers == Qt::NoModifier && (press.key == Qt::Key_Up || press.key == Qt::Key_Down);
        const bool closes = press.key == Qt::Key_Escape && !m_p.hasSheet && !m_p.focus && m_p.query.isEmpty();
        const bool isTheCarets =
            press.key == Qt::Key_Right && (!m_p.query.isEmpty() || m_p.selected.isEmpty() || m_p.focus);
        const bool isTheFields = press.key == Qt::Key_Z && m_p.removed.isEmpty();
        // Where arrows lead among controls is a matter of geometry, which other tests look at.
        const bool hops = isVertical && !m_p.hasSheet && (m_p.focus || (press.key == Qt::Key_Up && isFirst));
        if (closes || isTheCarets || isTheFields || hops)
            return;
        m_story.append(QKeySequence(QKeyCombination(press.modifiers, press.key)).toString());
        m_f.press(press.key, press.modifiers);
        press.effect(m_p);
    }
    void type()
    {
        auto* clear = m_f.view()->findChild<ClearButton*>();
        if (clear->isVisible() && !m_p.hasSheet && below(4) == 0) {
            m_story.append(u"click on clear"_s);
            QTest::mouseClick(clear, Qt::LeftButton);
            return m_p.type({});
        }
        m_story.append(u"abeo"_s.mid(below(4), 1));
        m_f.type(m_story.last());
        m_p.type((m_p.hasSheet ? m_p.sheetQuery : m_p.query) + m_story.last());
    }
    void clickSheetRow()
    {
        const auto rows = m_f.view()->findChildren<CommandRow*>();
        m_story.append(u"click in or beside the sheet"_s);
        const auto index = below(rows.size() + 1);
        if (index < rows.size())
            QTest::mouseClick(rows.at(index), Qt::LeftButton);
        else
            QTest::mouseClick(m_f.view()->findChild<CommandSheet*>(), Qt::LeftButton, {}, {30, 300});
        m_p.run(m_p.labels(), index);
    }
    void removeBehind()
    {
        m_story.append(u"removed behind the sheet"_s);
        m_f.model.remove(*m_f.model.selectedItem());
        m_p.remove();
    }
    void clickRow()
    {
        const qsizetype index = below(20);
        if (index >= m_f.model.visible().size() || m_f.frame(FocusKey::row(m_f.entry(index).id)).isEmpty())
            return;
        QWidget* rows = m_f.view()->findChild<HistoryList*>()->viewport();
        const QPoint place = rows->mapFrom(m_f.view(), m_f.frame(FocusKey::row(m_f.entry(index).id)).center());
        m_story.append(u"click on row %1"_s.arg(index));
        QTest::mouseClick(rows, Qt::LeftButton, {}, place);
        m_p.select(m_p.visible().at(index));
        if (below(4) != 0)
            return;
        QTest::mouseDClick(rows, Qt::LeftButton, {}, place);
        m_p.enter();
    }
    void copyOutside()
    {
        static const QStringList texts{u"alpha"_s, u"beta"_s, u"gamma"_s, u"boat"_s, u"toe"_s, u"oboe"_s, u"a"_s};
        const QString text = texts.at(below(texts.size())).repeated(static_cast<int>(below(3)) + 1);
        m_story.append(u"copied "_s + text);
        ClipItem item = PanelFixture::item(ClipType::text, text);
        item.createdAt = m_f.store.timeOfNewEntry();
        (void)m_f.store.add(item);
        m_f.model.refresh();
        m_p.copied(text);
    }
    void reopen()
    {
        m_story.append(u"opened"_s);
        m_other.show();
        m_other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_other));
        QVERIFY(!m_f.panel.isVisible());
        QVERIFY(m_f.open());
        QTRY_VERIFY(m_f.view()->activeField()->hasFocus());
        m_p.removed.clear();
        m_p.type({});
        m_p.select(m_p.visible().value(0));
    }

    std::minstd_rand m_random;
    QStringList m_story;
    PlainPanel m_p;
    PanelFixture m_f;
    QWidget m_other;
};

} // namespace

class PanelStreamTest final : public QObject
{
    Q_OBJECT
private slots:
    void agreesWithItsLikeness_data();
    void agreesWithItsLikeness();
};

void PanelStreamTest::agreesWithItsLikeness_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 8; ++seed)
        QTest::addRow("stream %u", seed) << seed;
}

void PanelStreamTest::agreesWithItsLikeness()
{
    QFETCH(unsigned, seed);
    Stream stream(seed);
    for (int i = 0; i < 250; ++i) {
        stream.step();
        QTRY_VERIFY2(stream.ranAll(), stream.story().constData());
        for (qsizetype part = 0; part < stream.likeness().size(); ++part)
            QVERIFY2(stream.panel().at(part) == stream.likeness().at(part),
                     qPrintable(stream.panel().at(part) + u" instead of "_s + stream.likeness().at(part) +
                                u" after "_s + QString::fromUtf8(stream.story())));
    }
}

QTEST_MAIN(PanelStreamTest)

#include "PanelStreamTest.moc"
