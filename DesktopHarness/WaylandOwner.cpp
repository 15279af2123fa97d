#include "WaylandOwner.h"

#include "ClosedPipes.h"
#include "WaylandClient.h"

#include <ext-data-control-v1-client-protocol.h>

#include <algorithm>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace Clipboard::Testing {

namespace {

/// The same protocol under its older name, which is the one that sway knows.
wl_interface managerInterface()
{
    wl_interface interface = ext_data_control_manager_v1_interface;
    interface.name = "zwlr_data_control_manager_v1";
    return interface;
}
const wl_interface manager = managerInterface();

constexpr qsizetype typesAtOnce = 64; // what has no room in the connection's buffer ends the program

/// False when nobody reads any more.
bool writeAll(int pipe, const char* bytes, qsizetype size)
{
    while (size > 0) {
        const ssize_t written = ::write(pipe, bytes, static_cast<size_t>(size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

} // namespace

struct WaylandOwner::Objects
{
    explicit Objects(const VirtualSession& session)
        : client(session)
    {
    }

    WaylandClient client;
    wl_event_queue* waiting = nullptr; // for round trips beside the thread
    wl_seat* seat = nullptr;
    ext_data_control_manager_v1* manager = nullptr;
    ext_data_control_device_v1* device = nullptr;
    ext_data_control_source_v1* source = nullptr;

    void end()
    {
        if (source != nullptr)
            ext_data_control_source_v1_destroy(source);
        ext_data_control_device_v1_destroy(device);
        ext_data_control_manager_v1_destroy(manager);
        wl_seat_destroy(seat);
        wl_event_queue_destroy(waiting);
        client.close();
    }
};

WaylandOwner::WaylandOwner(const VirtualSession& session)
    : m_objects(std::make_unique<Objects>(session))
    , m_end(::eventfd(0, EFD_CLOEXEC))
{
    if (m_objects->client.display() == nullptr)
        return;
    m_objects->manager = static_cast<ext_data_control_manager_v1*>(m_objects->client.bind(manager));
    m_objects->seat = static_cast<wl_seat*>(m_objects->client.bind(wl_seat_interface));
    m_objects->device = ext_data_control_manager_v1_get_data_device(m_objects->manager, m_objects->seat);
    using Device = ext_data_control_device_v1;
    using Offer = ext_data_control_offer_v1;
    // What others copy is no matter. An offer that is let go earlier, with news of it on their way, is never freed.
    static constexpr auto letGo = [](void*, Device*, Offer* offer) {
        if (offer != nullptr)
            ext_data_control_offer_v1_destroy(offer);
    };
    static constexpr ext_data_control_device_v1_listener contents{
        [](void*, Device*, Offer*) {},
        letGo,
        [](void*, Device*) {},
        letGo,
    };
    ext_data_control_device_v1_add_listener(m_objects->device, &contents, nullptr);
    m_objects->waiting = wl_display_create_queue(m_objects->client.display());
    m_thread = std::thread([this] { run(); });
}

WaylandOwner::~WaylandOwner()
{
    die();
    ::close(m_end);
}

void WaylandOwner::copy(const QHash<QByteArray, Answer>& answers)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_answers = answers;
        m_asked.clear();
        m_answered.clear();
    }
    using Source = ext_data_control_source_v1;
    static constexpr ext_data_control_source_v1_listener listener{
        [](void* self, Source*, const char* type, int pipe) { static_cast<WaylandOwner*>(self)->answer(type, pipe); },
        [](void*, Source*) {},
    };
    Source* old = std::exchange(m_objects->source, ext_data_control_manager_v1_create_data_source(m_objects->manager));
    ext_data_control_source_v1_add_listener(m_objects->source, &listener, this);
    QByteArrayList types = answers.keys();
    std::ranges::sort(types);
    for (qsizetype i = 0; i < types.size(); ++i) {
        ext_data_control_source_v1_offer(m_objects->source, types[i].constData());
        if (i % typesAtOnce == typesAtOnce - 1)
            wl_display_roundtrip_queue(m_objects->client.display(), m_objects->waiting);
    }
    ext_data_control_device_v1_set_selection(m_objects->device, m_objects->source);
    if (old != nullptr)
        ext_data_control_source_v1_destroy(old);
    wl_display_roundtrip_queue(m_objects->client.display(), m_objects->waiting);
}

void WaylandOwner::clear()
{
    ext_data_control_device_v1_set_selection(m_objects->device, nullptr);
    wl_display_roundtrip_queue(m_objects->client.display(), m_objects->waiting);
}

void WaylandOwner::die()
{
    if (!m_thread.joinable())
        return;
    ::eventfd_write(m_end, 1);
    m_thread.join();
    m_objects->end();
}

QByteArrayList WaylandOwner::contentAsked() const
{
    const std::scoped_lock lock(m_mutex);
    return m_asked;
}

QByteArrayList WaylandOwner::answered() const
{
    const std::scoped_lock lock(m_mutex);
    return m_answered;
}

/// Until it is told to end, or a manner of answering is to die.
void WaylandOwner::run()
{
    surviveClosedPipes();
    wl_display* display = m_objects->client.display();
    while (!m_isOver && wl_display_get_error(display) == 0) {
        while (wl_display_prepare_read(display) != 0)
            wl_display_dispatch_pending(display);
        wl_display_flush(display);
        pollfd sources[] = {{wl_display_get_fd(display), POLLIN, 0}, {m_end, POLLIN, 0}};
        ::poll(sources, std::size(sources), m_isOver ? 0 : -1); // what the others' round trips brought was just handled
        wl_display_read_events(display);
        wl_display_dispatch_pending(display);
        m_isOver = m_isOver || sources[1].revents != 0;
    }
    // As the end of a process closes them: in the order in which they were opened.
    ::shutdown(wl_display_get_fd(display), SHUT_RDWR);
    for (const int pipe : std::as_const(m_held))
        ::close(pipe);
}

void WaylandOwner::answer(const QByteArray& type, int pipe)
{
    Answer answer;
    {
        const std::scoped_lock lock(m_mutex);
        m_asked.append(type);
        answer = m_answers.value(type);
    }
    if (!send(answer, pipe)) {
        m_held.append(pipe);
        return;
    }
    ::close(pipe);
    const std::scoped_lock lock(m_mutex);
    m_answered.append(type);
}

bool WaylandOwner::send(const Answer& answer, int pipe)
{
    const char* bytes = answer.bytes.constData();
    const qsizetype twoPieces = qMin(2 * answer.pieceBytes, answer.bytes.size());
    switch (answer.manner) {
    case Answer::Manner::AtOnce:
    case Answer::Manner::InPieces:
    case Answer::Manner::Late:
        writeAll(pipe, bytes, answer.bytes.size());
        return true;
    case Answer::Manner::Refuse:
        return true;
    case Answer::Manner::EndlessPieces:
        while (writeAll(pipe, bytes, answer.bytes.size())) {
        }
        return true;
    case Answer::Manner::DieInTheMiddle:
        m_isOver = true;
        [[fallthrough]];
    case Answer::Manner::StallInTheMiddle:
    case Answer::Manner::ChangeInTheMiddle:
    case Answer::Manner::FallInTheMiddle:
        writeAll(pipe, bytes, twoPieces);
        return false;
    case Answer::Manner::Mute:
        return false;
    }
    return true;
}

} // namespace Clipboard::Testing
