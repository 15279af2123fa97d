#include "EditorStream.h"

#include "Annotation/EditorLifecycle.h"
#include "AnnotationFakes.h"

using namespace ClipboardCore;
using namespace Qt::StringLiterals;

namespace {

constexpr QRectF bounds(0, 0, 200, 100);

/// What undo and redo bring back.
bool areAlike(const AnnotationSession& a, const AnnotationSession& b)
{
    return a.annotations() == b.annotations() && a.crop() == b.crop();
}

class Player final
{
public:
    explicit Player(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }

    const char* play()
    {
        while (!m_bytes.empty() && !m_broken) {
            if (!m_editor.session())
                handle(EditorEvents::Open{AnnotationFakes::session(), {}});
            const auto frozen = whatIsFinished();
            step();
            const auto still = whatIsFinished();
            require(!frozen || !still || frozen->first != still->first || areAlike(frozen->second, still->second),
                    "what is being finished stays as it is");
            require(!m_editor.isDragging() || m_editor.areExitsAllowed(), "a question or an exit drops the drag");
            if (const AnnotationSession* session = m_editor.session())
                checkSession(*session);
        }
        if (m_editor.session() && !m_broken)
            checkHistory(*m_editor.session());
        return m_broken;
    }

private:
    std::uint8_t next()
    {
        if (m_bytes.empty())
            return 0;
        const std::uint8_t byte = m_bytes.front();
        m_bytes = m_bytes.subspan(1);
        return byte;
    }
    template <typename Values>
    auto oneOf(const Values& values)
    {
        return *(std::begin(values) + next() % std::ssize(values));
    }

    void require(bool holds, const char* property)
    {
        if (!holds && !m_broken)
            m_broken = property;
    }

    /// The document that is being finished, if there is one.
    [[nodiscard]] std::optional<std::pair<EditorGeneration, AnnotationSession>> whatIsFinished() const
    {
        if (!m_editor.session() || m_editor.areExitsAllowed() || m_editor.isConfirmingDiscard())
            return std::nullopt;
        return std::pair(*m_editor.shownGeneration(), *m_editor.session());
    }

    CanvasGesture::Mouse mouse()
    {
        // A little more than the picture.
        const QPointF at(-50 + 1.2 * next(), -40 + 0.7 * next());
        return {at, m_scale, 1 + next() % 3, next() % 4 == 0};
    }

    void step()
    {
        const std::uint8_t kind = next() % 32;
        if (kind == 0)
            return m_editor.mouseDown(mouse());
        if (kind == 1)
            return drag();
        if (kind == 2)
            return release();
        if (kind < 10)
            return m_editor.edit([this, kind](auto& session) { change(session, kind); });
        if (kind < 13)
            return pressKey();
        if (kind == 13 && !m_editor.isDragging()) // else it would change what the drag shows
            m_scale = oneOf(std::array{0.13, 0.5, 1.0, 3.0});
        if (kind == 14)
            return handle(event());
        if (kind == 15)
            return nudge();
        m_editor.mouseDown(mouse());
        drag();
        release();
    }

    void change(AnnotationSession& session, std::uint8_t kind)
    {
        if (kind < 7)
            return session.chooseTool(oneOf(allAnnotationTools));
        if (kind < 9)
            return session.setText(oneOf(std::array{u""_s, u"a"_s, u"long\nand\n\nlonger"_s}));
        session.setColor(oneOf(AnnotationPalette::colors));
        session.setSize(oneOf(allAnnotationSizes));
    }

    void drag()
    {
        const CanvasGesture::Mouse to = mouse();
        m_editor.mouseDragged(to);
        const auto preview = m_editor.sessionToDraw();
        if (!to.isConstrained || !m_editor.isDragging() || m_editor.session()->annotations() == preview->annotations())
            return;
        const bool isNew = preview->annotations().size() > m_editor.session()->annotations().size();
        if (!isNew || !isDragged(preview->annotations().last().kind))
            return;
        const Annotation& mark = preview->annotations().last();
        const double width = std::abs(mark.end.x() - mark.start.x());
        const double height = std::abs(mark.end.y() - mark.start.y());
        const bool isLevel = mark.kind == Annotation::Kind::arrow && std::min(width, height) < 1e-9;
        require(isLevel || std::abs(width - height) < 1e-9, "a constrained mark lies on an eighth or is a square");
    }

    void nudge()
    {
        m_editor.edit([](auto& session) { session.endEditing(); }); // which ends an earlier run, too
        const auto before = *m_editor.session();
        for (int i = next() % 4; i >= 0; --i) {
            const QPoint by = oneOf(std::array{QPoint(1, 0), QPoint(-1, 0), QPoint(0, 10), QPoint(0, -10)});
            (void)m_editor.handleKey({.kind = EditorKey::Kind::nudge, .by = by});
        }
        AnnotationSession after = *m_editor.session();
        if (!areAlike(after, before)) {
            after.undo();
            require(areAlike(after, before), "a run of nudges is one step");
        }
    }

    void release()
    {
        const bool isDragging = m_editor.isDragging();
        const auto before = m_editor.session() ? std::optional(*m_editor.session()) : std::nullopt;
        const auto preview = m_editor.sessionToDraw();
        m_editor.mouseUp(mouse());
        require(!m_editor.isDragging(), "a release ends the drag");
        if (!isDragging)
            return require(!before || areAlike(*m_editor.session(), *before), "a release without a press does nothing");
        AnnotationSession after = *m_editor.session();
        require(areAlike(after, *preview), "a drag does what it showed");
        if (areAlike(after, *before) || after.editing())
            return;
        after.undo();
        require(areAlike(after, *before), "a drag is one step");
    }

    void pressKey()
    {
        EditorKey key{.kind = static_cast<EditorKey::Kind>(next() % 12)};
        key.exit = static_cast<EditorExit>(next() % 3);
        key.tool = oneOf(allAnnotationTools);
        key.color = next() % AnnotationPalette::colors.size();
        key.steps = next() % 2 == 0 ? 1 : -1;
        key.by = {next() % 300 - 150, 1};
        const auto outcome = m_editor.handleKey(key);
        require(outcome.kind != EditorKeyOutcome::Kind::confirmDiscard || m_editor.isConfirmingDiscard(),
                "what is not asked is not answered");
    }

    EditorEvent event()
    {
        using namespace EditorEvents;
        const std::uint8_t which = next(); // an answer for the last document, mostly
        const EditorGeneration generation = which < 200 ? m_latest : which % (m_latest + 2);
        const Finish finish{static_cast<EditorExit>(next() % 3), next() % 2 == 0};
        return oneOf(std::array<EditorEvent, 11>{Open{AnnotationFakes::session(), {}}, finish, finish,
                                                 Flattened{u"path"_s, generation}, Flattened{std::nullopt, generation},
                                                 Committed{QUuid(), {}, generation}, CommitFailed{generation}, Close{},
                                                 KeepEditing{}, Quit{}, ConfirmDiscard{}});
    }

    void handle(const EditorEvent& event)
    {
        const auto shown = m_editor.shownGeneration();
        const bool areExitsAllowed = m_editor.areExitsAllowed();
        const bool wasChanged = shown && m_editor.session()->hasChanges();
        const QList<EditorOutcome> outcomes = m_editor.handle(event);
        if (std::holds_alternative<EditorEvents::Finish>(event)) {
            require(outcomes.isEmpty() == !areExitsAllowed, "an exit begins when exits are allowed");
            if (areExitsAllowed)
                ++m_commitsLeft[*shown];
        }
        bool isClosing = false;
        for (const EditorOutcome& outcome : outcomes) {
            if (const auto* commit = std::get_if<EditorOutcomes::Commit>(&outcome))
                require(--m_commitsLeft[commit->generation] >= 0, "an exit is committed once");
            isClosing |= std::holds_alternative<EditorOutcomes::Close>(outcome) ||
                         std::holds_alternative<EditorOutcomes::Dismiss>(outcome) ||
                         std::holds_alternative<EditorOutcomes::Quit>(outcome);
        }
        require(isClosing == (shown && !m_editor.session()), "the window closes with the document");
        require(!wasChanged || m_editor.shownGeneration() == shown ||
                    std::holds_alternative<EditorEvents::ConfirmDiscard>(event) ||
                    std::holds_alternative<EditorEvents::Committed>(event),
                "no change is lost unasked");
        if (const auto now = m_editor.shownGeneration(); now && now != shown) {
            require(*now > m_latest, "no number is used twice");
            m_latest = *now;
        }
    }

    void checkSession(const AnnotationSession& session)
    {
        const auto isMark = [&](std::optional<qsizetype> i) {
            return !i || (*i >= 0 && *i < session.annotations().size());
        };
        require(isMark(session.selection()) && isMark(session.editing()), "what is selected exists");
        require(!session.editing() || session.selection() == session.editing(), "what is typed is selected");
        const QRectF crop = session.crop();
        require(crop == crop.toRect() && bounds.contains(crop) && !crop.isEmpty(), "the crop is pixels of the picture");

        int counters = 0;
        for (qsizetype i = 0; i < session.annotations().size(); ++i) {
            const Annotation& mark = session.annotations().at(i);
            constexpr QRectF nearly(-1e-6, -1e-6, 200 + 2e-6, 100 + 2e-6);
            require(nearly.contains(mark.start) && nearly.contains(mark.end), "no mark leaves the picture");
            if (mark.kind == Annotation::Kind::counter)
                require(session.counterNumber(i) == ++counters, "counters count");
        }
    }

    /// Undoes everything, and does it all again.
    void checkHistory(AnnotationSession session)
    {
        session.endEditing();
        QList<AnnotationSession> states{session}; // oldest first
        while (session.canUndo()) {
            session.undo();
            checkSession(session);
            states.prepend(session);
        }
        require(session.annotations().isEmpty() && session.crop() == bounds, "undo leads back to the start");
        for (const AnnotationSession& state : std::as_const(states)) {
            require(areAlike(session, state), "redo leads back to the end");
            session.redo();
        }
        const auto flat = session.flatten();
        require(flat && flat->size() == session.crop().size(), "the result is the crop");
    }

    std::span<const std::uint8_t> m_bytes;
    EditorLifecycle m_editor;
    double m_scale = 1;
    EditorGeneration m_latest = 0;
    std::map<EditorGeneration, int> m_commitsLeft;
    const char* m_broken = nullptr;
};

} // namespace

const char* EditorStream::firstBroken(std::span<const std::uint8_t> bytes)
{
    return Player(bytes).play();
}
