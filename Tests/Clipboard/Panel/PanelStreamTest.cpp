#include "PanelFixture.h"

#include "ClearButton.h"
#include "CommandRow.h"
#include "CommandSheet.h"
#include "HistoryList.h"

#include <QScreen>

#include <algorithm>
#include <random>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;
using ClipboardCore::ClipItem;
using ClipboardCore::ClipType;
using ClipboardCore::FocusKey;

namespace {

/// Long texts have other actions than short ones.
QStringList labelsOf(const QString& text)
{
    return text.size() > 4 ? QStringList{u"Clean whitespace"_s, u"Slugify"_s, u"QR code"_s}
                           : QStringList{u"Copy path"_s, u"Decode Base64"_s};
}

/// What a user sees of the panel.
struct Seen
{
    QStringList texts;
    QString selected;
    QString typed;
    std::optional<QStringList> sheet; // its rows
    int highlighted = 0;
    bool isFocusElsewhere = false;

    [[nodiscard]] qsizetype row() const { return texts.indexOf(selected); }
    /// The entry so many rows further down, around the ends.
    [[nodiscard]] QString next(qsizetype by) const
    {
        return texts.isEmpty() ? QString() : texts.at((row() + by + texts.size()) % texts.size());
    }
};

/// A stream of what users do to the panel. Each step knows what must come of it.
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
        m_f.fillTexts({u"alpha"_s, u"beta"_s, u"gamma"_s, u"boat"_s, u"toe"_s, u"oboe"_s, u"a"_s, u"rotor"_s, u"bee"_s,
                       u"aboard"_s, u"tea"_s, u"boa"_s});
        QVERIFY(m_f.open());
    }
    void step()
    {
        static constexpr std::array steps{&Stream::move,  &Stream::move,     &Stream::type,    &Stream::erase,
                                          &Stream::jump,  &Stream::toggle,   &Stream::escape,  &Stream::copy,
                                          &Stream::alter, &Stream::clickRow, &Stream::command, &Stream::command};
        m_before = seen();
        (this->*steps.at(below(steps.size())))();
        holdsTogether();
    }
    [[nodiscard]] QByteArray story() const
    {
        return m_story.last(std::min<qsizetype>(m_story.size(), 15)).join(u", ").toUtf8();
    }
    /// Whether what was painted piece by piece is what would be painted at once.
    [[nodiscard]] bool isOnScreen()
    {
        const QRect part = m_f.view()->geometry().adjusted(1, Theme::panelRadius, -1, -Theme::panelRadius);
        const QPixmap screen = m_f.panel.screen()->grabWindow(m_f.panel.winId());
        return screen.copy(part).toImage() == m_f.panel.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    }

private:
    size_t below(size_t count) { return m_random() % count; }
    [[nodiscard]] Seen seen() const
    {
        m_f.view()->sync();
        Seen now{m_f.visible(), m_f.selected(), m_f.typed(), {}, 0, m_f.model.focus().has_value()};
        if (!m_f.view()->findChild<CommandSheet*>()->isVisible())
            return now;
        now.sheet.emplace();
        for (const auto* row : m_f.view()->findChildren<CommandRow*>())
            now.sheet->append(row->text());
        now.highlighted = static_cast<int>(m_f.model.cmdkIndex());
        return now;
    }
    /// What is always so.
    void holdsTogether() const
    {
        const Seen now = seen();
        QCOMPARE(now.texts, m_f.stored().filter(m_f.model.query()));
        QCOMPARE(now.selected.isEmpty(), now.texts.isEmpty());
        QVERIFY(now.texts.isEmpty() || m_f.model.frames.contains(FocusKey::row(*m_f.model.selectedID()))); // in view
        QCOMPARE(now.sheet.has_value(), m_f.model.cmdkOpen());
        QCOMPARE(now.typed, now.sheet ? m_f.model.cmdkQuery() : m_f.model.query());
        if (now.sheet)
            QCOMPARE(*now.sheet, labelsOf(now.selected).filter(now.typed, Qt::CaseInsensitive));
        QVERIFY(m_f.view()->activeField()->hasFocus());
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        m_story.append(QKeySequence(QKeyCombination(modifiers, key)).toString());
        m_f.press(key, modifiers);
    }
    void hasSelected(const QString& text) const { QCOMPARE(seen().selected, text); }
    void hasRun(const QString& label)
    {
        const QString ran = label + u" of "_s + m_before.selected;
        ++m_ran;
        QTRY_COMPARE(m_f.effects.size(), m_ran);
        QCOMPARE(m_f.effects.last().payload.toString(), ran);
        QVERIFY(!m_f.model.cmdkOpen());
    }

    void move()
    {
        const bool isDown = m_before.row() == 0 || below(3) > 0;
        if (m_before.isFocusElsewhere && !m_before.sheet)
            return escape(); // where arrows lead among controls is a matter of geometry
        press(isDown ? Qt::Key_Down : Qt::Key_Up);
        if (!m_before.sheet)
            return hasSelected(m_before.next(isDown ? 1 : -1));
        const auto count = static_cast<int>(m_before.sheet->size());
        if (count > 0)
            QCOMPARE(seen().highlighted, (m_before.highlighted + (isDown ? 1 : -1) + count) % count);
    }
    void type()
    {
        const QString letter = u"abeo"_s.mid(static_cast<qsizetype>(below(4)), 1);
        m_story.append(letter);
        m_f.type(letter);
        QCOMPARE(seen().typed, m_before.typed + letter);
        QCOMPARE(seen().highlighted, 0);
    }
    void erase()
    {
        auto* clear = m_f.view()->findChild<ClearButton*>();
        const bool isClick = clear->isVisible() && !m_before.sheet && below(2) == 0;
        if (isClick)
            QTest::mouseClick(clear, Qt::LeftButton);
        else
            press(Qt::Key_Backspace);
        QCOMPARE(seen().typed, isClick ? QString() : m_before.typed.chopped(m_before.typed.isEmpty() ? 0 : 1));
    }
    void jump()
    {
        if (m_before.sheet || m_before.texts.isEmpty())
            return;
        const bool isEnd = below(2) == 0;
        switch (below(3)) {
        case 0:
            press(isEnd ? Qt::Key_End : Qt::Key_Home);
            break;
        case 1:
            press(isEnd ? Qt::Key_Down : Qt::Key_Up, Qt::ControlModifier);
            break;
        default:
            press(isEnd ? Qt::Key_PageDown : Qt::Key_PageUp);
        }
        hasSelected(isEnd ? m_before.texts.last() : m_before.texts.first());
    }
    void toggle()
    {
        press(Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(m_f.model.cmdkOpen(), !m_before.sheet && !m_before.selected.isEmpty());
    }
    void escape()
    {
        if (!m_before.sheet && m_before.typed.isEmpty() && !m_before.isFocusElsewhere)
            return; // it would close the panel
        press(Qt::Key_Escape);
        QCOMPARE(m_f.model.cmdkOpen(), m_before.sheet && !m_before.typed.isEmpty());
        QVERIFY(m_f.panel.isVisible());
        QVERIFY(m_before.sheet || !m_f.model.focus());
    }
    void copy()
    {
        if (m_before.sheet || m_before.selected.isEmpty())
            return;
        press(Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(m_f.pasteboard.content.string, m_before.selected.toUtf8());
        hasSelected(m_before.selected);
    }
    /// Pins, removes or brings back; what is behind the sheet can go as well.
    void alter()
    {
        if (m_before.selected.isEmpty())
            return;
        const QString after =
            m_before.row() + 1 < m_before.texts.size() ? m_before.next(1) : m_before.texts.value(m_before.row() - 1);
        if (m_before.sheet) {
            m_story.append(u"removed behind the sheet"_s);
            m_f.model.remove(*m_f.model.selectedItem());
        } else if (below(3) == 0) {
            const bool isPinned = m_f.model.selectedItem()->isPinned;
            press(Qt::Key_P, Qt::ControlModifier);
            QCOMPARE(m_f.model.selectedItem()->isPinned, !isPinned);
            return hasSelected(m_before.selected);
        } else {
            press(Qt::Key_Delete, Qt::ShiftModifier);
        }
        hasSelected(after);
        if (m_f.model.cmdkOpen())
            return;
        press(Qt::Key_Z, Qt::ControlModifier);
        hasSelected(m_before.selected);
        QCOMPARE(seen().texts, m_before.texts);
    }
    void clickRow()
    {
        const auto index = static_cast<qsizetype>(below(12));
        if (m_before.sheet || index >= m_before.texts.size() ||
            !m_f.model.frames.contains(FocusKey::row(m_f.entry(index).id)))
            return;
        QWidget* rows = m_f.view()->findChild<HistoryList*>()->viewport();
        const QPoint place = rows->mapFrom(m_f.view(), m_f.frame(FocusKey::row(m_f.entry(index).id)).center());
        m_story.append(u"click on row %1"_s.arg(index));
        QTest::mouseClick(rows, Qt::LeftButton, {}, place);
        hasSelected(m_before.texts.at(index));
        if (below(3) > 0)
            return;
        const int pastes = m_f.closeRequests;
        QTest::mouseDClick(rows, Qt::LeftButton, {}, place);
        QCOMPARE(m_f.closeRequests, pastes + 1);
        QCOMPARE(m_f.pasteboard.content.string, m_before.texts.at(index).toUtf8());
    }
    /// Runs an action: from the sheet or by its chip.
    void command()
    {
        if (m_before.selected.isEmpty() || (m_before.sheet && m_before.sheet->isEmpty()))
            return;
        if (!m_before.sheet) {
            if (!m_before.typed.isEmpty() || m_before.isFocusElsewhere)
                return; // the key is the caret's
            press(Qt::Key_Right);
            press(Qt::Key_Return);
            return hasRun(labelsOf(m_before.selected).first());
        }
        const auto rows = m_f.view()->findChildren<CommandRow*>();
        auto index = static_cast<qsizetype>(below(static_cast<size_t>(rows.size())));
        if (const auto way = below(3); way == 0) {
            m_story.append(u"click in the sheet"_s);
            QTest::mouseClick(rows.at(index), Qt::LeftButton);
        } else if (way == 1) {
            press(static_cast<Qt::Key>(Qt::Key_1 + index), Qt::ControlModifier);
        } else {
            index = m_before.highlighted;
            press(Qt::Key_Enter, Qt::KeypadModifier);
        }
        hasRun(m_before.sheet->at(index));
    }

    std::minstd_rand m_random;
    QStringList m_story;
    Seen m_before;
    qsizetype m_ran = 0;
    PanelFixture m_f;
};

} // namespace

class PanelStreamTest final : public QObject
{
    Q_OBJECT
private slots:
    void doesWhatIsExpected_data();
    void doesWhatIsExpected();
};

void PanelStreamTest::doesWhatIsExpected_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 6; ++seed)
        QTest::addRow("stream %u", seed) << seed;
}

void PanelStreamTest::doesWhatIsExpected()
{
    QFETCH(unsigned, seed);
    Stream stream(seed);
    for (int i = 0; i < 250; ++i) {
        stream.step();
        if (QTest::currentTestFailed())
            QFAIL(stream.story().constData());
        if (i % 8 == 0)
            QTRY_VERIFY2(stream.isOnScreen(), stream.story().constData());
    }
}

QTEST_MAIN(PanelStreamTest)

#include "PanelStreamTest.moc"
