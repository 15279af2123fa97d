#include "AssistiveClient.h"
#include "RunningTessaly.h"
#include "VirtualSession.h"

#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;
using Element = AssistiveClient::Element;

namespace {

// As the toolkit offers them to every client.
const QString press = u"Press"_s;
const QString setFocus = u"SetFocus"_s;

} // namespace

/// The program as somebody works with it who sees nothing: through another program that reads it out.
class AccessibilityJourneyTest final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void saysWhatIsThere();
    void saysWhereTheFocusGoes();
    void saysThatNothingIsFound();
    void selectsFiltersAndPastesOnRequest();
    void opensTheSheetAsADialog();

private:
    [[nodiscard]] int rows() const;

    std::unique_ptr<VirtualSession> m_session;
    std::unique_ptr<RunningTessaly> m_tessaly;
    std::unique_ptr<AssistiveClient> m_client;
};

void AccessibilityJourneyTest::init()
{
    m_session = std::make_unique<VirtualSession>();
    QVERIFY2(m_session->failure().isEmpty(), qPrintable(m_session->failure()));
    m_session->setEnvironment(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    m_client = std::make_unique<AssistiveClient>(m_session->environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s));
    QVERIFY2(m_client->failure().isEmpty(), qPrintable(m_client->failure()));
    m_tessaly = std::make_unique<RunningTessaly>(*m_session, QStringLiteral(TESSALY_PROGRAM));
    QVERIFY(m_tessaly->start());
    for (const char* content : {"a first note", "https://example.org/tides", "the last note"}) {
        m_session->run(u"xclip"_s, {u"-selection"_s, u"clipboard"_s}, content);
        QVERIFY(m_tessaly->waitForCaptures(1));
    }
    m_tessaly->press(u"super+shift+v"_s);
    QVERIFY(m_tessaly->waitForPanel(true));
    QVERIFY(m_client->hears(u"focused list item Text, the last note"_s));
    m_client->forgetHeard();
}

void AccessibilityJourneyTest::cleanup()
{
    m_client.reset();
    if (m_tessaly && m_tessaly->isRunning())
        QCOMPARE(m_tessaly->stop(SIGTERM), 0);
    m_tessaly.reset();
    m_session.reset();
}

int AccessibilityJourneyTest::rows() const
{
    const QList<Element> all = m_client->elements();
    return static_cast<int>(
        std::count_if(all.begin(), all.end(), [](const Element& element) { return element.role == "list item"_L1; }));
}

void AccessibilityJourneyTest::saysWhatIsThere()
{
    QCOMPARE(rows(), 3);
    const auto row = m_client->find(u"list item"_s, u"Text, the last note, copied "_s);
    const auto other = m_client->find(u"list item"_s, u"Links, https://example.org/tides, "_s);
    QVERIFY(row && other);
    QCOMPARE(row->description, u"Double-click to paste"_s);
    QVERIFY(row->is(AssistiveClient::selected) && !other->is(AssistiveClient::selected));

    const auto all = m_client->find(u"radio button"_s, u"All"_s);
    const auto links = m_client->find(u"radio button"_s, u"Links"_s);
    QVERIFY(all && links);
    QCOMPARE(all->description, u"3 items"_s);
    QCOMPARE(links->description, u"1 item"_s);
    QVERIFY(all->is(AssistiveClient::checked) && !links->is(AssistiveClient::checked));

    QVERIFY(m_client->find(u"text"_s, u"Search clipboard…"_s)->is(AssistiveClient::editable));
    QCOMPARE(m_client->find(u"push button"_s, u"Delete"_s)->description, u"Ctrl+Backspace"_s);
    QVERIFY(m_client->find(u"check box"_s, u"Pin"_s));
    QVERIFY(m_client->find(u"label"_s, u"the last note"_s)); // the preview
    for (const Element& element : m_client->elements())
        QVERIFY2(!element.is(AssistiveClient::focusable) || !element.name.isEmpty(), qPrintable(element.role));
}

void AccessibilityJourneyTest::saysWhereTheFocusGoes()
{
    m_tessaly->press(u"Down"_s);
    QVERIFY(m_client->hears(u"focused list item Links, https://example.org/tides"_s));
    QVERIFY(m_client->find(u"list item"_s, u"Links"_s)->is(AssistiveClient::focused));
    m_tessaly->press(u"Up"_s);
    m_tessaly->press(u"Up"_s);
    QVERIFY(m_client->hears(u"focused radio button "_s));
    QVERIFY(!m_client->find(u"list item"_s, u"Text, the last note"_s)->is(AssistiveClient::focused));
    m_client->forgetHeard();
    m_tessaly->press(u"Escape"_s);
    QVERIFY(m_client->hears(u"focused list item Text, the last note"_s));
}

void AccessibilityJourneyTest::saysThatNothingIsFound()
{
    m_tessaly->type(u"zzz"_s);
    QVERIFY(m_client->hears(u"showing notification No Results"_s));
    QCOMPARE(m_client->find(u"notification"_s, u"No Results"_s)->description, u"Nothing matches “zzz”"_s);
}

void AccessibilityJourneyTest::selectsFiltersAndPastesOnRequest()
{
    QVERIFY(m_client->perform(*m_client->find(u"list item"_s, u"Text, a first note"_s), setFocus));
    QVERIFY(m_client->find(u"label"_s, u"a first note"_s));

    QVERIFY(m_client->perform(*m_client->find(u"radio button"_s, u"Links"_s), press));
    QVERIFY(m_session->waitUntil([&] { return rows() == 1; }));

    QVERIFY(m_client->perform(*m_client->find(u"list item"_s, u"Links"_s), press));
    QVERIFY(m_tessaly->waitForPanel(false));
    QVERIFY(m_client->hears(u"showing notification Pasted “example.org”"_s));
    QVERIFY(m_tessaly->waitForNewest(u"https://example.org/tides"_s));
}

void AccessibilityJourneyTest::opensTheSheetAsADialog()
{
    m_tessaly->press(u"ctrl+k"_s);
    QVERIFY(m_client->hears(u"focused text Filter actions…"_s));
    const auto dialog = m_client->find(u"dialog"_s, u"Smart Actions"_s);
    QVERIFY(dialog && dialog->is(AssistiveClient::modal));
    QVERIFY(m_client->hears(u"focused list item Clean whitespace"_s));
    m_client->forgetHeard();
    m_tessaly->press(u"Down"_s);
    QVERIFY(m_client->hears(u"focused list item Slugify"_s));
    m_client->forgetHeard();
    m_tessaly->press(u"Escape"_s);
    QVERIFY(m_client->hears(u"focused list item Text, the last note"_s));
}

QTEST_GUILESS_MAIN(AccessibilityJourneyTest)

#include "AccessibilityJourneyTest.moc"
