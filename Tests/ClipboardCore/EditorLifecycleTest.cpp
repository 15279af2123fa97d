#include "Annotation/EditorLifecycle.h"
#include "AnnotationFakes.h"
#include "EditorStream.h"
#include "Rows.h"

#include <QTest>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

ClipItem picture(const QString& name)
{
    return {QUuid::createUuidV5({}, name), ClipType::image, Utf8Text(name), {}, {}, 0, false};
}

/// The editor, driven by words. A change is a counter; documents are called a, b and c in the order of their opening.
class Story final
{
public:
    /// Plays the words and answers with what the last one led to.
    QString play(const QString& words)
    {
        QString last;
        for (const QString& word : words.split(u' ')) {
            const QList<EditorOutcome> outcomes = step(word);
            QStringList names;
            for (const EditorOutcome& outcome : outcomes)
                names += std::visit(Name(), outcome);
            last = names.join(u" | "_s);
        }
        return last;
    }

    /// "b changed asking c waits finishing", "closed".
    [[nodiscard]] QString state() const
    {
        if (!editor.session())
            return u"closed"_s;
        QStringList parts{editor.original()->content.toString()};
        if (editor.session()->hasChanges())
            parts += u"changed"_s;
        if (editor.isConfirmingDiscard())
            parts += u"asking"_s;
        if (editor.waitingItem())
            parts += editor.waitingItem()->content.toString() + u" waits"_s;
        if (!editor.areExitsAllowed() && !editor.isConfirmingDiscard())
            parts += u"finishing"_s;
        return parts.join(u' ');
    }

    EditorLifecycle editor;

private:
    QList<EditorOutcome> step(const QString& word)
    {
        using namespace EditorEvents;
        // What follows a colon is the number of the document that an answer is for.
        const EditorGeneration generation = word.section(u':', 1).toInt();
        const std::map<QString, EditorEvent> events{
            {u"open"_s, Open{AnnotationFakes::session(), picture(QChar(u'a' + m_opened))}},
            {u"paste"_s, Finish{EditorExit::paste, m_originalExists}},
            {u"copy"_s, Finish{EditorExit::copy, m_originalExists}},
            {u"save"_s, Finish{EditorExit::save, m_originalExists}},
            {u"flattened"_s, Flattened{u"new"_s, generation}},
            {u"unflattened"_s, Flattened{std::nullopt, generation}},
            {u"committed"_s, Committed{picture(u"result"_s).id, u"“image”"_s, generation}},
            {u"failed"_s, CommitFailed{generation}},
            {u"close"_s, Close{}},
            {u"quit"_s, Quit{}},
            {u"keep"_s, KeepEditing{}},
            {u"discard"_s, ConfirmDiscard{}},
        };
        editor.edit([&word](AnnotationSession& session) {
            if (word == u"select")
                session.select({50, 50}, 0);
            if (word == u"change" || word == u"type") {
                session.chooseTool(word == u"type" ? AnnotationTool::text : AnnotationTool::counter);
                session.place(word == u"type" ? QPointF(10, 10) : QPointF(50, 50));
            }
        });
        m_originalExists &= word != u"gone";
        m_opened += word == u"open" ? 1 : 0;
        const auto event = events.find(word.section(u':', 0, 0));
        return event == events.end() ? QList<EditorOutcome>() : editor.handle(event->second);
    }

    struct Name
    {
        QString operator()(const EditorOutcomes::Flatten& of) const { return u"flatten %1"_s.arg(of.generation); }
        QString operator()(const EditorOutcomes::Commit& of) const
        {
            return u"commit %1 of %2 as %3"_s.arg(of.path, of.original.content.toString()).arg(of.generation);
        }
        QString operator()(const EditorOutcomes::Paste& of) const { return u"paste "_s + of.snippet; }
        QString operator()(const EditorOutcomes::Toast& of) const { return of.text; }
        QString operator()(const EditorOutcomes::Quit&) const { return u"quit"_s; }
        QString operator()(const EditorOutcomes::Dismiss&) const { return u"dismiss"_s; }
        QString operator()(const EditorOutcomes::Close& of) const
        {
            for (const auto& entry : {u"a"_s, u"b"_s, u"result"_s})
                if (of.selecting == picture(entry).id)
                    return u"close on "_s + entry;
            return u"close"_s;
        }
    };

    int m_opened = 0;
    bool m_originalExists = true;
};

} // namespace

class EditorLifecycleTest final : public QObject
{
    Q_OBJECT
private slots:
    void transitions();
    void keysByState();
    void holdsWhateverHappens();
};

void EditorLifecycleTest::transitions()
{
    checkRows(
        +[](const char* words, const QString& lastOutcome, const QString& state) {
            Story story;
            QCOMPARE(story.play(QLatin1StringView(words)), lastOutcome);
            QCOMPARE(story.state(), state);
        },
        {
            // Leaving with a result
            {"open change paste flattened:1", u"commit new of a as 1"_s, u"a changed finishing"_s},
            {"open change paste flattened:1 committed:1", u"dismiss | paste “image”"_s, u"closed"_s},
            {"open change copy flattened:1 committed:1", u"Copied “image” | close on result"_s, u"closed"_s},
            {"open save", u"commit a of a as 1"_s, u"a finishing"_s},
            {"open gone save", u"flatten 1"_s, u"a finishing"_s},
            // Once only, and in turn
            {"open change save committed:1", u""_s, u"a changed finishing"_s},
            {"open change save flattened:1 committed:1 open committed:1", u""_s, u"b"_s},
            // Failures leave the document open and another exit free
            {"open change paste unflattened:1", u"Couldn't paste image"_s, u"a changed"_s},
            {"open save failed:1", u"Couldn't save image"_s, u"a"_s},
            {"open change save unflattened:1 copy", u"flatten 1"_s, u"a changed finishing"_s},
            // One document over another
            {"open change open keep close discard", u"close on a"_s, u"closed"_s},
            {"open change open open discard", u""_s, u"c"_s},
            // Over one that is being finished
            {"open change save open flattened:1 committed:1", u"Saved image"_s, u"b"_s},
            {"open change paste open flattened:1 committed:1", u"Copied “image” — press ⌘V to paste"_s, u"b"_s},
            {"open change save open unflattened:1", u"Couldn't save image"_s, u"a changed asking b waits"_s},
            // Discarding one that is being finished
            {"open change save close unflattened:1", u"Couldn't save image"_s, u"a changed asking"_s},
            {"open change save close discard open flattened:1", u""_s, u"b"_s},
            {"open change paste flattened:1 close discard committed:1", u"Copied “image” — press ⌘V to paste"_s,
             u"closed"_s},
            {"open change copy flattened:1 close discard failed:1", u"Couldn't copy image"_s, u"closed"_s},
            // Ending the program
            {"open quit", u"quit"_s, u"closed"_s},
            {"open change close quit discard", u"quit"_s, u"closed"_s},
            {"open change quit keep close discard", u"close on a"_s, u"closed"_s},
            {"open change quit open discard", u""_s, u"b"_s},
            {"open change paste quit flattened:1 committed:1", u"Copied “image” — press ⌘V to paste | quit"_s,
             u"closed"_s},
            {"open change save quit unflattened:1", u"Couldn't save image"_s, u"a changed asking"_s},
        });
}

void EditorLifecycleTest::keysByState()
{
    using Key = EditorKey::Kind;
    using enum EditorKeyOutcome::Kind;
    constexpr auto no = notHandled;
    // What becomes of the key where the editor is closed, drawing, typing, dragging, asking, asking and typing
    checkRows(
        +[](const char*, const EditorKey& key, const QList<EditorKeyOutcome::Kind>& expected) {
            for (int i = 0; i < 6; ++i) {
                Story story;
                if (i >= 1)
                    story.play(u"open change select"_s);
                if (i == 2 || i == 5)
                    story.play(u"type"_s);
                if (i == 3)
                    story.editor.mouseDown({{50, 50}, 1, 1});
                if (i >= 4)
                    story.play(u"close"_s);
                QCOMPARE(story.editor.handleKey(key).kind, expected.at(i));
                QCOMPARE(story.editor.isConfirmingDiscard(), i >= 4);
                if (i >= 3) // nothing happened behind the question
                    QCOMPARE(story.editor.session()->annotations().size(), i == 5 ? 2 : 1);
            }
        },
        {
            {"copy", {.kind = Key::exit, .exit = EditorExit::copy}, {no, finish, no, handled, handled, no}},
            {"paste", {.kind = Key::exit, .exit = EditorExit::paste}, {no, finish, finish, handled, handled, finish}},
            {"file", {.kind = Key::saveAs}, {no, saveAs, saveAs, handled, handled, handled}},
            {"colour", {.kind = Key::chooseColor}, {no, handled, no, handled, no, no}},
            {"nudge", {.kind = Key::nudge, .by = {1, 0}}, {no, handled, no, handled, no, no}},
            {"tool", {.kind = Key::chooseTool}, {no, handled, no, handled, no, no}},
            {"escape", {.kind = Key::escape}, {no, close, handled, handled, keepEditing, keepEditing}},
            {"confirm", {.kind = Key::confirm}, {no, no, no, handled, confirmDiscard, confirmDiscard}},
            {"undo", {.kind = Key::undo}, {no, handled, no, handled, handled, no}},
            {"delete", {.kind = Key::deleteSelection}, {no, handled, no, handled, no, no}},
            {"other", {}, {no, no, no, handled, no, no}},
        });
}

/// Whatever a hasty user, a window and late answers do, certain things hold.
void EditorLifecycleTest::holdsWhateverHappens()
{
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> bytes(random() % 2000);
        std::ranges::generate(bytes, [&random] { return static_cast<std::uint8_t>(random()); });
        const char* broken = EditorStream::firstBroken(bytes);
        QVERIFY2(!broken, qPrintable(u"seed %1: %2"_s.arg(seed).arg(QLatin1StringView(broken))));
    }
}

QTEST_APPLESS_MAIN(EditorLifecycleTest)
#include "EditorLifecycleTest.moc"
