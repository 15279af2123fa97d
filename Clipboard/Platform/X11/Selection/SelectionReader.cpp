#include "SelectionReader.h"

#include <algorithm>
#include <utility>

namespace Clipboard::X11 {

SelectionReader::SelectionReader(XcbConnection& connection, Options options,
                                 std::function<void(SelectionContent)> onContent, std::function<void()> onSettled)
    : m_connection(connection)
    , m_options(std::move(options))
    , m_onContent(std::move(onContent))
    , m_onSettled(std::move(onSettled))
    , m_windows(connection)
    , m_reading(m_options)
{
}

void SelectionReader::start(xcb_atom_t selection, xcb_timestamp_t time)
{
    cancel();
    m_selection = selection;
    m_time = time;
    m_stepTimeout = m_options.stepTimeout;
    m_end = Clock::now() + readTimeout;
    request(m_connection.atom("TARGETS"), maxTargetListBytes);
}

void SelectionReader::startAgain()
{
    start(m_selection, m_time);
    m_isAgain = true;
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
    m_isRefused = m_isAgain = false;
    m_reading.reset();
}

void SelectionReader::request(xcb_atom_t target, qint64 maxBytes)
{
    m_transfer.emplace(m_connection, IncomingTransfer::Request{m_windows.next(), m_selection, target,
                                                               m_windows.property(), m_time, maxBytes});
    m_stepEnd = Clock::now() + m_stepTimeout;
    m_formEnd = std::min(m_end, Clock::now() + m_options.formTimeout);
}

std::optional<SelectionContent> SelectionReader::content() const
{
    return m_stage == Stage::Companions ? std::optional(m_reading.content()) : std::nullopt;
}

void SelectionReader::handle(const xcb_selection_notify_event_t& event)
{
    if (m_transfer && m_transfer->handle(event))
        advance();
    else if (event.property != XCB_ATOM_NONE)
        m_windows.discard(event.requestor);
}

void SelectionReader::handle(const xcb_property_notify_event_t& event)
{
    if (event.state != XCB_PROPERTY_NEW_VALUE)
        return;
    if (m_transfer && m_transfer->request().requestor == event.window) {
        if (m_transfer->handle(event))
            advance();
    } else {
        m_windows.discard(event.window);
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
        m_reading.finish();
    m_reading.giveUpKind();
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
        m_isRefused = true;
        break;
    }
    if (m_transfer->state() == IncomingTransfer::State::Failed || m_transfer->bytes().isEmpty()) {
        m_reading.giveUp();
    } else {
        const xcb_atom_t type = m_transfer->type();
        const auto found =
            m_reading.take({m_connection.atomNames({&type, 1}).front(), m_transfer->format(), m_transfer->bytes()});
        if (found == ContentReading::Found::content)
            publish();
    }
    next();
}

void SelectionReader::next()
{
    if (const auto target = m_reading.wanted()) {
        request(m_connection.atom(*target), m_reading.maxBytes());
        return;
    }
    m_transfer.reset();
    if (m_stage != Stage::Companions && !m_isAgain)
        publish();
    m_stage = Stage::Companions;
    m_onSettled();
}

/// Hands the content on; from here on it is complete.
void SelectionReader::publish()
{
    m_stage = Stage::Companions;
    m_onContent(m_reading.content());
}

/// The first ones, and the marks wherever they stand.
void SelectionReader::leaveWorthALook(std::vector<xcb_atom_t>& targets)
{
    if (targets.size() <= maxTargets)
        return;
    const auto beyond = targets.begin() + maxTargets;
    std::vector<xcb_atom_t> marks;
    for (const QString& name : m_options.secretTargets) {
        const xcb_atom_t mark = m_connection.atom(name.toLatin1());
        if (std::find(beyond, targets.end(), mark) != targets.end())
            marks.push_back(mark);
    }
    targets.resize(maxTargets);
    targets.insert(targets.end(), marks.begin(), marks.end());
}

void SelectionReader::readTargets()
{
    std::vector<QByteArray> offered;
    // Old programs give the list the type TARGETS; a list that is not one of atoms says nothing.
    if (m_transfer->format() == 32) {
        const QByteArray& bytes = m_transfer->bytes();
        std::vector<xcb_atom_t> atoms(static_cast<size_t>(bytes.size()) / sizeof(xcb_atom_t));
        std::copy_n(bytes.constData(), atoms.size() * sizeof(xcb_atom_t), reinterpret_cast<char*>(atoms.data()));
        leaveWorthALook(atoms);
        offered = m_connection.atomNames(atoms);
    }
    m_stage = Stage::Content;
    m_reading.begin(offered);
    next();
}

} // namespace Clipboard::X11
