#include "JourneyTest.h"

using namespace Qt::StringLiterals;
using namespace Clipboard::Testing;

/// Entries that are dragged out of the list with a real pointer.
class DragJourneyTest final : public JourneyTest
{
    Q_OBJECT
public:
    DragJourneyTest()
        : JourneyTest({.trayHost = true})
    {
    }

private slots:
    void takesATextIntoAnEditor();
    void opensAFileInAnEditor();

private:
    void arrive() override;

    QString m_letter; // the document in an editor beside the panel
};

namespace {

constexpr QPoint bareDesktop(200, 300);
constexpr QPoint inTheEditor(200, 650);

} // namespace

void DragJourneyTest::arrive()
{
    copyFile(writeFile(u"report.txt"_s, "a report"));
    copy("to be dragged");
    m_letter = openDocument(u"letter.txt"_s);
    if (const auto editor = desktop().activeWindow())
        desktop().place(*editor, {10, 450, 400, 300});
    callUp();
}

void DragJourneyTest::takesATextIntoAnEditor()
{
    lift(row(0), tessaly().panel()->geometry.topLeft() + QPoint(200, 25)); // the search field
    letGo();                                                               // changes nothing
    lift(row(0), bareDesktop);
    QVERIFY(tessaly().panel()); // it stays while the entry is on its way
    dropOn(inTheEditor);
    expectDocument("*"); // marks unsaved changes
    press("Escape");     // would clear a query first
    expectNoPanel();
    press("ctrl+s");
    expectFile(m_letter, "to be dragged");
}

void DragJourneyTest::opensAFileInAnEditor()
{
    lift(row(1), bareDesktop);
    dropOn(inTheEditor);
    expectDocument("report.txt");
}

QTEST_GUILESS_MAIN(DragJourneyTest)
#include "DragJourneyTest.moc"
