#include "Annotation/EditorLifecycle.h"
#include "AnnotationFakes.h"

#include <QTest>

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
                names += name(outcome);
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
        // What follows a colon is the number of the document that an answer is for.
        const EditorGeneration generation = word.section(u':', 1).toInt();
        const QString verb = word.section(u':', 0, 0);
        if (verb == u"open")
            return editor.handle(EditorEvents::Open{AnnotationFakes::session(), picture(QChar(u'a' + m_opened++))});
        if (verb == u"change")
            change();
        if (verb == u"gone")
            m_originalExists = false;
        if (verb == u"paste" || verb == u"copy" || verb == u"save")
            return editor.handle(EditorEvents::Finish{verb == u"paste"  ? EditorExit::paste
                                                      : verb == u"copy" ? EditorExit::copy
                                                                        : EditorExit::save,
                                                      m_originalExists});
        if (verb == u"flattened")
            return editor.handle(EditorEvents::Flattened{u"new"_s, generation});
        if (verb == u"unflattened")
            return editor.handle(EditorEvents::Flattened{std::nullopt, generation});
        if (verb == u"committed")
            return editor.handle(EditorEvents::Committed{picture(u"result"_s).id, u"“image”"_s, generation});
        if (verb == u"failed")
            return editor.handle(EditorEvents::CommitFailed{generation});
        if (verb == u"close")
            return editor.handle(EditorEvents::Close{});
        if (verb == u"quit")
            return editor.handle(EditorEvents::Quit{});
        if (verb == u"keep")
            return editor.handle(EditorEvents::KeepEditing{});
        if (verb == u"discard")
            return editor.handle(EditorEvents::ConfirmDiscard{});
        return {};
    }

    void change()
    {
        editor.edit([](AnnotationSession& session) {
            session.chooseTool(AnnotationTool::counter);
            session.place({50, 50});
        });
    }

    static QString name(const EditorOutcome& outcome)
    {
        if (const auto* flatten = std::get_if<EditorOutcomes::Flatten>(&outcome))
            return u"flatten %1"_s.arg(flatten->generation);
        if (const auto* commit = std::get_if<EditorOutcomes::Commit>(&outcome))
            return u"commit %1 of %2 as %3"_s.arg(commit->path, commit->original.content.toString())
                .arg(commit->generation);
        if (const auto* paste = std::get_if<EditorOutcomes::Paste>(&outcome))
            return u"paste "_s + paste->snippet;
        if (const auto* toast = std::get_if<EditorOutcomes::Toast>(&outcome))
            return toast->text;
        if (const auto* close = std::get_if<EditorOutcomes::Close>(&outcome)) {
            for (const auto& entry : {u"a"_s, u"b"_s, u"result"_s}) {
                if (close->selecting == picture(entry).id)
                    return u"close on "_s + entry;
            }
            return u"close"_s;
        }
        return std::holds_alternative<EditorOutcomes::Quit>(outcome) ? u"quit"_s : u"dismiss"_s;
    }

    int m_opened = 0;
    bool m_originalExists = true;
};

} // namespace

class EditorLifecycleTest final : public QObject
{
    Q_OBJECT
private slots:
    void transitions_data();
    void transitions();
    void keysByState_data();
    void keysByState();
};

void EditorLifecycleTest::transitions_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("last"); // what the last word leads to
    QTest::addColumn<QString>("state");
    const auto row = [](const QString& words, const QString& last, const QString& state) {
        QTest::newRow(qUtf8Printable(words)) << words << last << state;
    };
    // Leaving with a result
    row(u"open change paste"_s, u"flatten 1"_s, u"a changed finishing"_s);
    row(u"open change paste flattened:1"_s, u"commit new of a as 1"_s, u"a changed finishing"_s);
    row(u"open change paste flattened:1 committed:1"_s, u"dismiss | paste “image”"_s, u"closed"_s);
    row(u"open change copy flattened:1 committed:1"_s, u"Copied “image” | close on result"_s, u"closed"_s);
    row(u"open change save flattened:1 committed:1"_s, u"Saved image | close on result"_s, u"closed"_s);
    row(u"open save"_s, u"commit a of a as 1"_s, u"a finishing"_s);
    row(u"open gone save"_s, u"flatten 1"_s, u"a finishing"_s);
    // Once only, and in turn
    row(u"open change save committed:1"_s, u""_s, u"a changed finishing"_s);
    row(u"open change save failed:1"_s, u""_s, u"a changed finishing"_s);
    row(u"open save unflattened:1"_s, u""_s, u"a finishing"_s);
    row(u"open change save flattened:1 committed:1 open committed:1"_s, u""_s, u"b"_s);
    // Failures leave the document open and another exit free
    row(u"open change paste unflattened:1"_s, u"Couldn't paste image"_s, u"a changed"_s);
    row(u"open change copy flattened:1 failed:1"_s, u"Couldn't copy image"_s, u"a changed"_s);
    row(u"open save failed:1"_s, u"Couldn't save image"_s, u"a"_s);
    row(u"open change save unflattened:1 flattened:1"_s, u""_s, u"a changed"_s);
    row(u"open change save unflattened:1 copy"_s, u"flatten 1"_s, u"a changed finishing"_s);
    // Leaving without one
    row(u"open close"_s, u"close on a"_s, u"closed"_s);
    row(u"open change close"_s, u""_s, u"a changed asking"_s);
    // One document over another
    row(u"open open"_s, u""_s, u"b"_s);
    row(u"open change open"_s, u""_s, u"a changed asking b waits"_s);
    row(u"open change open discard"_s, u""_s, u"b"_s);
    row(u"open change open keep"_s, u""_s, u"a changed"_s);
    row(u"open change open keep close discard"_s, u"close on a"_s, u"closed"_s);
    row(u"open change open open discard"_s, u""_s, u"c"_s);
    row(u"open change close open discard"_s, u""_s, u"b"_s);
    // Over one that is being finished
    row(u"open change save open"_s, u""_s, u"a changed b waits finishing"_s);
    row(u"open change save open flattened:1 committed:1"_s, u"Saved image"_s, u"b"_s);
    row(u"open change paste open flattened:1 committed:1"_s, u"Copied “image” — press ⌘V to paste"_s, u"b"_s);
    row(u"open change save open unflattened:1"_s, u"Couldn't save image"_s, u"a changed asking b waits"_s);
    row(u"open save open failed:1"_s, u"Couldn't save image"_s, u"b"_s);
    row(u"open change save open unflattened:1 discard save"_s, u"commit b of b as 2"_s, u"b finishing"_s);
    // Discarding one that is being finished
    row(u"open change save close"_s, u""_s, u"a changed asking"_s);
    row(u"open change save close flattened:1 committed:1"_s, u"Saved image | close on result"_s, u"closed"_s);
    row(u"open change save close unflattened:1"_s, u"Couldn't save image"_s, u"a changed asking"_s);
    row(u"open change save close keep"_s, u""_s, u"a changed finishing"_s);
    row(u"open change save close discard"_s, u"close on a"_s, u"closed"_s);
    row(u"open change save close discard flattened:1"_s, u""_s, u"closed"_s);
    row(u"open change save close discard open flattened:1"_s, u""_s, u"b"_s);
    row(u"open change paste flattened:1 close discard committed:1"_s, u"Copied “image” — press ⌘V to paste"_s,
        u"closed"_s);
    row(u"open change copy flattened:1 close discard failed:1"_s, u"Couldn't copy image"_s, u"closed"_s);
    row(u"open change copy open close discard flattened:1"_s, u""_s, u"b"_s);
    row(u"open copy close open committed:1"_s, u"Copied “image”"_s, u"b"_s);
    // Ending the program
    row(u"open quit"_s, u"quit"_s, u"closed"_s);
    row(u"open change quit"_s, u""_s, u"a changed asking"_s);
    row(u"open change close quit discard"_s, u"quit"_s, u"closed"_s);
    row(u"open change quit keep close discard"_s, u"close on a"_s, u"closed"_s);
    row(u"open change quit open discard"_s, u""_s, u"b"_s);
    row(u"open change open quit discard"_s, u"quit"_s, u"closed"_s);
    row(u"open change paste quit flattened:1 committed:1"_s, u"Copied “image” — press ⌘V to paste | quit"_s,
        u"closed"_s);
    row(u"open change save quit unflattened:1"_s, u"Couldn't save image"_s, u"a changed asking"_s);
}

void EditorLifecycleTest::transitions()
{
    QFETCH(QString, words);
    QFETCH(QString, last);
    QFETCH(QString, state);
    Story story;
    QCOMPARE(story.play(words), last);
    QCOMPARE(story.state(), state);
}

void EditorLifecycleTest::keysByState_data()
{
    QTest::addColumn<EditorKey>("key");
    QTest::addColumn<QList<EditorKeyOutcome::Kind>>(
        "expected"); // closed, drawing, typing, dragging, asking, asking and typing
    using Key = EditorKey::Kind;
    using enum EditorKeyOutcome::Kind;
    using Kinds = QList<EditorKeyOutcome::Kind>;
    const auto row = [](const char* name, const EditorKey& key, const Kinds& expected) {
        QTest::newRow(name) << key << expected;
    };
    row("copy", {.kind = Key::exit, .exit = EditorExit::copy},
        {notHandled, finish, notHandled, handled, handled, notHandled});
    row("paste", {.kind = Key::exit, .exit = EditorExit::paste},
        {notHandled, finish, finish, handled, handled, finish});
    row("file", {.kind = Key::saveAs}, {notHandled, saveAs, saveAs, handled, handled, handled});
    row("colour", {.kind = Key::chooseColor}, {notHandled, handled, notHandled, handled, notHandled, notHandled});
    row("nudge", {.kind = Key::nudge, .by = {1, 0}},
        {notHandled, handled, notHandled, handled, notHandled, notHandled});
    row("tool", {.kind = Key::chooseTool}, {notHandled, handled, notHandled, handled, notHandled, notHandled});
    row("escape", {.kind = Key::escape}, {notHandled, close, handled, handled, keepEditing, keepEditing});
    row("confirm", {.kind = Key::confirm},
        {notHandled, notHandled, notHandled, handled, confirmDiscard, confirmDiscard});
    row("undo", {.kind = Key::undo}, {notHandled, handled, notHandled, handled, handled, notHandled});
    row("delete", {.kind = Key::deleteSelection}, {notHandled, handled, notHandled, handled, notHandled, notHandled});
    row("other", {}, {notHandled, notHandled, notHandled, handled, notHandled, notHandled});
}

void EditorLifecycleTest::keysByState()
{
    QFETCH(EditorKey, key);
    QFETCH(QList<EditorKeyOutcome::Kind>, expected);
    const auto select = [](AnnotationSession& session) { session.select({50, 50}, 0); };
    const auto type = [](AnnotationSession& session) {
        session.chooseTool(AnnotationTool::text);
        session.place({10, 10});
    };
    std::array<Story, 6> stories; // in the order of the column
    for (size_t i = 1; i < stories.size(); ++i) {
        stories.at(i).play(u"open change"_s);
        stories.at(i).editor.edit(select);
        if (i == 2 || i == 5)
            stories.at(i).editor.edit(type);
        if (i >= 4)
            stories.at(i).play(u"close"_s);
    }
    stories.at(3).editor.mouseDown({{50, 50}, 1, 1});
    for (size_t i = 0; i < stories.size(); ++i) {
        const bool isAsking = stories.at(i).editor.isConfirmingDiscard();
        QCOMPARE(stories.at(i).editor.handleKey(key).kind, expected.at(static_cast<qsizetype>(i)));
        QCOMPARE(stories.at(i).editor.isConfirmingDiscard(), isAsking);
        if (const AnnotationSession* session = stories.at(i).editor.session(); session && (isAsking || i == 3))
            QCOMPARE(session->annotations().size(), i == 5 ? 2 : 1); // nothing happened behind the question
    }
}

QTEST_APPLESS_MAIN(EditorLifecycleTest)
#include "EditorLifecycleTest.moc"
