#include "OfferReader.h"

#include <climits>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace Clipboard::Wayland {

namespace {

// Fewer turns for large content. Where a pipe cannot have so much it works as well.
constexpr int pipeBytes = 1 << 20;
constexpr qsizetype pieceBytes = pipeBytes;
// A pipe ends the same way when all is written and when the writer dies. As much as this is written in one go, and
// comes whole or not at all (pipe(7)).
constexpr qsizetype undividedBytes = PIPE_BUF;
// After so many pieces the engine looks at its other duties, however fast more come in.
constexpr int maxPiecesInARow = 16;

} // namespace

OfferReader::OfferReader(Options options, Callbacks callbacks)
    : m_options(std::move(options))
    , m_callbacks(std::move(callbacks))
    , m_reading(m_options)
{
}

bool OfferReader::isMark(const QByteArray& type) const
{
    return m_options.secretTargets.contains(QString::fromLatin1(type));
}

void OfferReader::start(DataControlOffer offer, const std::vector<QByteArray>& types)
{
    cancel();
    m_offer = std::move(offer);
    m_stepTimeout = m_options.stepTimeout;
    m_end = Clock::now() + readTimeout;
    m_reading.begin(types);
    next();
}

void OfferReader::learn(const ext_data_control_offer_v1* offer, const QByteArray& type)
{
    if (offer != m_offer.get() || !isMark(type))
        return;
    m_reading.begin({type});
    next();
}

void OfferReader::cancel()
{
    closePipe();
    m_offer.reset();
    m_reading.reset();
    m_isPublished = false;
}

void OfferReader::hurry(std::chrono::milliseconds stepTimeout)
{
    m_stepTimeout = std::min(m_stepTimeout, stepTimeout);
    m_stepEnd = std::min(m_stepEnd, Clock::now() + m_stepTimeout);
}

std::optional<SelectionContent> OfferReader::content() const
{
    return m_isPublished ? std::optional(m_reading.content()) : std::nullopt;
}

void OfferReader::request(const QByteArray& type, qint64 maxBytes)
{
    closePipe();
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return;
    // The owner's end stays as it expects it.
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    ::fcntl(ends[0], F_SETPIPE_SZ, pipeBytes);
    ext_data_control_offer_v1_receive(m_offer.get(), type.constData(), ends[1]);
    ::close(ends[1]); // the request holds a copy
    m_pipe = ends[0];
    m_type = type;
    m_maxBytes = maxBytes;
    m_stepEnd = Clock::now() + m_stepTimeout;
    m_formEnd = std::min(m_end, Clock::now() + m_options.formTimeout);
}

void OfferReader::closePipe()
{
    if (m_pipe >= 0)
        ::close(std::exchange(m_pipe, -1));
    m_bytes = {};
    m_isDoubtful = false;
    ++m_request;
}

void OfferReader::collectSources(std::vector<pollfd>& sources) const
{
    if (m_pipe >= 0)
        sources.push_back({m_pipe, POLLIN, 0});
}

void OfferReader::serve()
{
    if (m_pipe < 0)
        return;
    const auto isWhole = read();
    if (!isWhole)
        return;
    if (!*isWhole || m_bytes.isEmpty()) {
        m_reading.giveUp();
        next();
    } else if (m_bytes.size() > undividedBytes) {
        doubt();
    } else {
        take();
    }
}

/// A program that ends loses its connection before its pipes. So the compositor has told of an end that broke the form
/// off before it answers a question that is asked now.
void OfferReader::doubt()
{
    ::close(std::exchange(m_pipe, -1));
    m_isDoubtful = true;
    m_callbacks.afterNews([this, request = m_request] {
        if (request == m_request)
            trust();
    });
}

void OfferReader::trust()
{
    if (std::exchange(m_isDoubtful, false))
        take();
}

void OfferReader::take()
{
    const QByteArray bytes = std::exchange(m_bytes, {});
    if (m_reading.take({m_type, 8, bytes}) == ContentReading::Found::content)
        publish();
    next();
}

std::optional<bool> OfferReader::read()
{
    for (int piece = 0; piece < maxPiecesInARow; ++piece) {
        const qsizetype before = m_bytes.size();
        if (m_bytes.capacity() - before < pieceBytes)
            m_bytes.reserve(std::max(2 * before, before + pieceBytes));
        m_bytes.resize(before + pieceBytes);
        const ssize_t count = ::read(m_pipe, m_bytes.data() + before, pieceBytes);
        m_bytes.resize(before + std::max<ssize_t>(count, 0));
        if (count == 0) {
            m_bytes.squeeze();
            return true;
        }
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno == EAGAIN ? std::nullopt : std::optional(false);
        if (m_bytes.size() > m_maxBytes)
            return false;
        m_stepEnd = Clock::now() + m_stepTimeout;
    }
    return {};
}

std::optional<OfferReader::Clock::time_point> OfferReader::deadline() const
{
    return m_pipe >= 0 ? std::optional(std::min(m_stepEnd, m_formEnd)) : std::nullopt;
}

void OfferReader::expire(Clock::time_point now)
{
    if (m_pipe < 0 || now < *deadline())
        return;
    if (now >= m_end)
        m_reading.finish();
    m_reading.giveUpKind();
    next();
}

void OfferReader::next()
{
    closePipe();
    while (const auto type = m_reading.wanted()) {
        request(*type, m_reading.maxBytes());
        if (m_pipe >= 0)
            return;
        m_reading.giveUp(); // no pipe to be had
    }
    if (!m_isPublished)
        publish();
    m_callbacks.onSettled();
}

/// Hands the content on; from here on it is complete.
void OfferReader::publish()
{
    m_isPublished = true;
    m_callbacks.onContent(m_reading.content());
}

} // namespace Clipboard::Wayland
