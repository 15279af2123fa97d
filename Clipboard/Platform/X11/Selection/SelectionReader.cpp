#include "SelectionReader.h"

#include "SelectionText.h"
#include "UriList.h"

#include <algorithm>
#include <utility>

namespace Clipboard::X11 {

namespace {

constexpr const char* uriListTarget = "text/uri-list";
constexpr const char* copiedFilesTarget = "x-special/gnome-copied-files";
constexpr const char* htmlTarget = "text/html";

} // namespace

SelectionReader::SelectionReader(XcbConnection& connection, xcb_window_t requestor, Options options,
                                 std::function<void(SelectionContent)> onContent, std::function<void()> onSettled)
    : m_connection(connection)
    , m_requestor(requestor)
    , m_options(std::move(options))
    , m_onContent(std::move(onContent))
    , m_onSettled(std::move(onSettled))
    , m_properties(connection, requestor)
{
}

void SelectionReader::start(xcb_atom_t selection, xcb_timestamp_t time)
{
    cancel();
    m_selection = selection;
    m_time = time;
    m_stepTimeout = m_options.stepTimeout;
    m_end = Clock::now() + readTimeout;
    request(m_connection.atom("TARGETS"), qint64(maxTargets) * 4);
}

void SelectionReader::hurry(std::chrono::milliseconds stepTimeout)
{
    m_stepTimeout = std::min(m_stepTimeout, stepTimeout);
    m_stepEnd = std::min(m_stepEnd, Clock::now() + m_stepTimeout);
}

void SelectionReader::cancel()
{
    m_transfer.reset();
    m_stage = Stage::Targets;
    m_steps.clear();
    m_content = {};
    m_kept.clear();
}

void SelectionReader::request(xcb_atom_t target, qint64 maxBytes)
{
    m_transfer.emplace(m_connection, IncomingTransfer::Request{m_requestor, m_selection, target, m_properties.next(),
                                                               m_time, maxBytes});
    m_stepEnd = Clock::now() + m_stepTimeout;
    m_formEnd = std::min(m_end, Clock::now() + m_options.formTimeout);
}

std::optional<SelectionContent> SelectionReader::content() const
{
    return m_stage == Stage::Companions ? std::optional(m_content) : std::nullopt;
}

void SelectionReader::handle(const xcb_selection_notify_event_t& event)
{
    if (m_transfer && m_transfer->handle(event))
        advance();
    else if (event.property != XCB_ATOM_NONE)
        m_properties.discard(event.property);
}

void SelectionReader::handle(const xcb_property_notify_event_t& event)
{
    if (event.state != XCB_PROPERTY_NEW_VALUE)
        return;
    if (m_transfer && m_transfer->request().property == event.atom) {
        if (m_transfer->handle(event))
            advance();
    } else {
        m_properties.discard(event.atom);
    }
}

std::optional<SelectionReader::Clock::time_point> SelectionReader::deadline() const
{
    return m_transfer ? std::optional(std::min(m_stepEnd, m_formEnd)) : std::nullopt;
}

void SelectionReader::expire(Clock::time_point now)
{
    if (!m_transfer || now < *deadline())
        return;
    if (now >= m_end)
        m_steps.clear();
    // An owner that is mute about one kind may still have another; a second form of the same kind is no better.
    if (!m_steps.empty()) {
        const Kind mute = m_steps.front().kind;
        std::erase_if(m_steps, [mute](const Step& step) { return step.kind == mute; });
    }
    next();
}

void SelectionReader::advance()
{
    switch (m_transfer->state()) {
    case IncomingTransfer::State::Waiting:
    case IncomingTransfer::State::Incremental:
        m_stepEnd = Clock::now() + m_stepTimeout;
        return;
    case IncomingTransfer::State::Done:
        if (m_stage == Stage::Targets) {
            readTargets();
            return;
        }
        break;
    case IncomingTransfer::State::Failed:
        break;
    }
    if (m_steps.empty()) {
        next();
        return;
    }
    const Step step = m_steps.front();
    m_steps.pop_front();
    const bool taken = m_transfer->state() == IncomingTransfer::State::Done && takeContent(step);
    if (taken && m_stage == Stage::Content) {
        publish();
        planCompanions(step.kind);
    }
    next();
}

void SelectionReader::next()
{
    if (!m_steps.empty()) {
        request(m_connection.atom(m_steps.front().target),
                m_stage == Stage::Companions ? maxCompanionBytes : maxSelectionBytes);
        return;
    }
    m_transfer.reset();
    if (m_stage != Stage::Companions)
        publish();
    m_onSettled();
}

/// Hands the content on; from here on it is complete.
void SelectionReader::publish()
{
    m_stage = Stage::Companions;
    m_onContent(m_content);
}

void SelectionReader::readTargets()
{
    std::vector<QByteArray> offered;
    // Old programs give the list the type TARGETS; a list that is not one of atoms says nothing.
    if (m_transfer->format() == 32) {
        const QByteArray& bytes = m_transfer->bytes();
        std::vector<xcb_atom_t> atoms(static_cast<size_t>(bytes.size()) / sizeof(xcb_atom_t));
        std::copy_n(bytes.constData(), atoms.size() * sizeof(xcb_atom_t), reinterpret_cast<char*>(atoms.data()));
        offered = m_connection.atomNames(atoms);
    }
    for (const QByteArray& name : offered) {
        if (!name.isEmpty())
            m_content.types.insert(QString::fromLatin1(name));
    }
    m_stage = Stage::Content;
    if (!m_content.types.intersects(m_options.secretTargets))
        planContent(offered);
    next();
}

void SelectionReader::planContent(const std::vector<QByteArray>& offered)
{
    const auto add = [&](Kind kind, const QByteArray& target) {
        if (std::ranges::find(offered, target) != offered.end())
            m_steps.push_back({kind, target});
    };
    add(Kind::Files, uriListTarget);
    add(Kind::Files, copiedFilesTarget);
    add(Kind::PNG, "image/png");
    add(Kind::TIFF, "image/tiff");
    for (const char* target : SelectionText::targets)
        add(Kind::Text, target);
}

/// Content has been found: the steps left are replaced by what is worth keeping beside it.
void SelectionReader::planCompanions(Kind kind)
{
    const auto left = std::exchange(m_steps, {});
    const auto addFirst = [&](Kind wanted) {
        const auto found = std::ranges::find(left, wanted, &Step::kind);
        if (found != left.end())
            m_steps.push_back(*found);
    };
    if (kind == Kind::Files)
        addFirst(Kind::Files);
    // A table is a picture and a text, too: where it is pasted decides which is wanted.
    if (kind != Kind::Text)
        addFirst(Kind::Text);
    if (kind != Kind::Files && m_content.types.contains(QLatin1String(htmlTarget)))
        m_steps.push_back({Kind::Other, htmlTarget});
}

bool SelectionReader::takeContent(const Step& step)
{
    const IncomingTransfer& transfer = *m_transfer;
    if (transfer.bytes().isEmpty() || transfer.format() != 8)
        return false;
    if (step.kind != Kind::Text) {
        keep(step, {});
        if (m_stage == Stage::Companions)
            return true;
    }
    switch (step.kind) {
    case Kind::Files:
        m_content.fileURLs = UriList::localFiles(transfer.bytes(), m_options.hostName);
        return !m_content.fileURLs.isEmpty();
    case Kind::PNG:
        m_content.png = transfer.bytes();
        return true;
    case Kind::TIFF:
        m_content.tiff = transfer.bytes();
        return true;
    case Kind::Text: {
        const xcb_atom_t type = transfer.type();
        auto text = SelectionText::decode(m_connection.atomNames({&type, 1}).front(), transfer.bytes());
        if (!text || text->isEmpty())
            return false;
        keep(step, *text);
        if (m_stage == Stage::Content)
            m_content.text = std::move(text);
        return true;
    }
    case Kind::Other:
        break;
    }
    return false;
}

void SelectionReader::keep(const Step& step, const QByteArray& text)
{
    if (step.kind == Kind::Text) {
        for (auto& form : formsOfText(text))
            m_kept.push_back(std::move(form));
        return;
    }
    const xcb_atom_t type = m_transfer->type();
    m_kept.push_back(verbatimForm(step.target, m_connection.atomNames({&type, 1}).front(), m_transfer->format(),
                                  m_transfer->bytes()));
}

} // namespace Clipboard::X11
