#include "AssistiveClient.h"
#include "JourneyTest.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;
using Element = AssistiveClient::Element;

/// The program as somebody works with it who sees nothing: through another program that reads it out.
class AccessibilityJourneyTest final : public JourneyTest
{
    Q_OBJECT

private slots:
    void saysWhatIsThereAndWhereTheFocusGoes();
    void selectsFiltersAndPastesOnRequest();
    void opensTheSheetAsADialog();
    void namesMenusAndPreferences();

private:
    void prepare() override;
    void arrive() override;
    void leave() override { m_client.reset(); }
    /// Waits until that is said, and forgets it and all that was said before: the next time it is news.
    void expectHeard(QAnyStringView beginning, Where where = Where::current());
    /// The element of that role whose name begins so; waits for it.
    Element find(QAnyStringView role, QAnyStringView name, Where where = Where::current());
    void perform(QAnyStringView action, const Element& element, Where where = Where::current());
    [[nodiscard]] qsizetype rows() const;

    std::unique_ptr<AssistiveClient> m_client;
};

void AccessibilityJourneyTest::prepare()
{
    session().setEnvironment(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    m_client = std::make_unique<AssistiveClient>(session().environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s));
}

void AccessibilityJourneyTest::arrive()
{
    for (const char* content : {"a first note", "https://example.org/tides", "the last note"})
        copy(content);
    callUp();
    expectHeard("focused list item Text, the last note");
}

void AccessibilityJourneyTest::expectHeard(QAnyStringView beginning, Where where)
{
    const QString wanted = beginning.toString();
    const auto isSaid = [&] {
        const QStringList& heard = m_client->heard();
        const auto said = std::ranges::find_if(heard, [&](const QString& words) { return words.startsWith(wanted); });
        if (said == heard.end())
            return false;
        m_client->forgetHeard(said - heard.begin() + 1);
        return true;
    };
    expect(u"the words “%1”"_s.arg(wanted), isSaid, where);
}

Element AccessibilityJourneyTest::find(QAnyStringView role, QAnyStringView name, Where where)
{
    Element found;
    const auto isShown = [&] {
        const QList<Element> all = m_client->elements();
        const auto match = std::ranges::find_if(all, [&](const Element& candidate) {
            return candidate.role == role && candidate.name.startsWith(name.toString());
        });
        found = match != all.end() ? *match : Element();
        return match != all.end();
    };
    expect(u"the %1 “%2”"_s.arg(role.toString(), name.toString()), isShown, where);
    return found;
}

void AccessibilityJourneyTest::perform(QAnyStringView action, const Element& element, Where where)
{
    if (!hasFailed() && !m_client->perform(element, action.toString()))
        fail(u"%1 offers no such action"_s.arg(element.name), where);
}

qsizetype AccessibilityJourneyTest::rows() const
{
    const QList<Element> all = m_client->elements();
    return std::ranges::count(all, u"list item"_s, &Element::role);
}

void AccessibilityJourneyTest::saysWhatIsThereAndWhereTheFocusGoes()
{
    QCOMPARE(rows(), 3);
    const Element row = find("list item", "Text, the last note, copied ");
    QCOMPARE(row.description, u"Double-click to paste"_s);
    QVERIFY(row.is(AssistiveClient::selected));
    QVERIFY(!find("list item", "Links, https://example.org/tides, ").is(AssistiveClient::selected));

    const Element all = find("radio button", "All");
    const Element links = find("radio button", "Links");
    QCOMPARE(all.description, u"3 items"_s);
    QCOMPARE(links.description, u"1 item"_s);
    QVERIFY(all.is(AssistiveClient::checked) && !links.is(AssistiveClient::checked));

    QVERIFY(find("text", "Search clipboard…").is(AssistiveClient::editable));
    QCOMPARE(find("push button", "Delete").description, u"Ctrl+Backspace"_s);
    find("check box", "Pin");
    find("label", "the last note"); // the preview
    for (const Element& element : m_client->elements())
        QVERIFY2(!element.is(AssistiveClient::focusable) || !element.name.isEmpty(), qPrintable(element.role));

    press("Down");
    expectHeard("focused list item Links, https://example.org/tides");
    QVERIFY(find("list item", "Links").is(AssistiveClient::focused));
    press("Up Up");
    expectHeard("focused radio button ");
    QVERIFY(!find("list item", "Text, the last note").is(AssistiveClient::focused));
    type("zzz");
    expectHeard("showing notification No Results");
    QCOMPARE(find("notification", "No Results").description, u"Nothing matches “zzz”"_s);
}

void AccessibilityJourneyTest::selectsFiltersAndPastesOnRequest()
{
    perform("SetFocus", find("list item", "Text, a first note"));
    find("label", "a first note");
    perform("Press", find("radio button", "Links"));
    expect("the links alone", [this] { return rows() == 1; });
    perform("Press", find("list item", "Links"));
    expectNoPanel();
    expectHeard("showing notification Copied “example.org” — press "); // nothing is in front
    expectNewest("https://example.org/tides");
}

void AccessibilityJourneyTest::opensTheSheetAsADialog()
{
    press("ctrl+k");
    expectHeard("focused text Filter actions…");
    QVERIFY(find("dialog", "Smart Actions").is(AssistiveClient::modal));
    expectHeard("focused list item Clean whitespace");
    press("Down");
    expectHeard("focused list item Slugify");
    press("Escape");
    expectHeard("focused list item Text, the last note");
}

void AccessibilityJourneyTest::namesMenusAndPreferences()
{
    press("F10");
    expectHeard("focused menu item Show History");
    press("Down");
    expectHeard("focused menu item Clear History…");
    press("Escape Menu");
    expectHeard("focused menu item Paste");
    press("Escape ctrl+comma");
    expectHeard("focused push button Hot key: Super+Shift+V");
    press("Tab Tab");
    expectHeard("focused radio button Newest copy");
    press("Tab space Tab");
    expectHeard("focused text Entries kept");
    QVERIFY(find("check box", "Launch at Login").is(AssistiveClient::checked));
    for (const Element& element : m_client->elements())
        QVERIFY2(!element.is(AssistiveClient::focusable) || !element.name.isEmpty(), qPrintable(element.role));
}

QTEST_GUILESS_MAIN(AccessibilityJourneyTest)
#include "AccessibilityJourneyTest.moc"
