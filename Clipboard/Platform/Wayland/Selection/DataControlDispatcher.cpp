#include "DataControlDispatcher.h"

#include <QUuid>

#include <algorithm>
#include <utility>

namespace Clipboard::Wayland {

namespace {

/// Ours alone: another instance's content is another program's.
QByteArray freshMark()
{
    return "application/x-tessaly-own;id=" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
}

} // namespace

std::unique_ptr<DataControlDispatcher> DataControlDispatcher::open(const QByteArray& display, const Options& options,
                                                                   PublishFunction publish, const Remains* remains)
{
    auto connection = WaylandConnection::open(display);
    if (!connection)
        return nullptr;
    std::unique_ptr<DataControlDispatcher> dispatcher(
        new DataControlDispatcher(std::move(connection), options, std::move(publish)));
    return dispatcher->watch(remains) ? std::move(dispatcher) : nullptr;
}

DataControlDispatcher::DataControlDispatcher(std::unique_ptr<WaylandConnection> connection, const Options& options,
                                             PublishFunction publish)
    : m_connection(std::move(connection))
    , m_publish(std::move(publish))
    , m_manager(bindDataControl(*m_connection))
    , m_seat(static_cast<wl_seat*>(m_connection->bind(wl_seat_interface, 1)))
    , m_ownMark(freshMark())
    , m_pipes(options.writeTimeout)
    , m_reader(options.reading, {.onContent = [this](const SelectionContent& content) { this->publish(content); },
                                 .onSettled = [this] { tellWaiting(); },
                                 .afterNews = [this](const std::function<void()>& done) { afterNews(done); }})
{
}

DataControlDispatcher::~DataControlDispatcher()
{
    for (const auto& [offer, types] : m_offers)
        ext_data_control_offer_v1_destroy(offer);
}

bool DataControlDispatcher::watch(const Remains* remains)
{
    if (!m_manager || !m_seat)
        return false;
    m_device.reset(ext_data_control_manager_v1_get_data_device(m_manager.get(), m_seat.get()));
    using Self = DataControlDispatcher;
    using Device = ext_data_control_device_v1;
    using Offer = ext_data_control_offer_v1;
    static constexpr ext_data_control_device_v1_listener listener{
        [](void* self, Device*, Offer* offer) { static_cast<Self*>(self)->offerCame(offer); },
        [](void* self, Device*, Offer* offer) { static_cast<Self*>(self)->selectionChanged(offer); },
        [](void* self, Device*) { static_cast<Self*>(self)->m_device.reset(); },
        [](void* self, Device*, Offer* offer) { static_cast<Self*>(self)->primaryChanged(offer); },
    };
    ext_data_control_device_v1_add_listener(m_device.get(), &listener, this);
    if (remains != nullptr) {
        m_writes = remains->writes;
        m_known = remains->known;
        m_isInitial = false;
    }
    // What is there is told before the answer.
    if (!m_connection->roundTrip() || !m_device)
        return false;
    m_hasWatched = true;
    if (remains != nullptr && remains->own && !m_reader.isBusy() && !m_reader.content())
        take(*remains->own);
    if (remains != nullptr && remains->unfinishedWrite)
        own(*remains->unfinishedWrite, remains->unfinishedNumber);
    return true;
}

std::any DataControlDispatcher::remains() const
{
    Remains remains;
    remains.writes = m_writes;
    remains.unfinishedWrite = m_unfinishedWrite;
    remains.unfinishedNumber = m_unfinishedNumber;
    if (m_clipboard)
        remains.own = m_clipboard->forms();
    else
        remains.known = m_reader.content();
    return remains;
}

void DataControlDispatcher::own(const SelectionForms& forms, quint64 write)
{
    m_unfinishedWrite = forms;
    m_unfinishedNumber = write;
    take(forms);
    m_connection->whenDone([this, write] {
        // What others do from here on comes after this write.
        m_writes = write;
        m_isInitial = false;
        m_known.reset();
        if (m_unfinishedNumber == write)
            m_unfinishedWrite.reset();
    });
}

/// The forms become the content of the clipboard.
void DataControlDispatcher::take(const SelectionForms& forms)
{
    auto source =
        std::make_unique<OfferSource>(m_manager.get(), forms, m_ownMark, m_pipes, [this] { m_clipboard.reset(); });
    ext_data_control_device_v1_set_selection(m_device.get(), source->get());
    // The old one goes last: in between there would be no content, which others take for the end of its owner.
    m_clipboard = std::move(source);
}

void DataControlDispatcher::afterWrites(bool primaryToo, const std::function<void()>& done)
{
    if (primaryToo && m_clipboard && hasPrimarySelection(m_manager)) {
        auto source = std::make_unique<OfferSource>(m_manager.get(), m_clipboard->forms(), m_ownMark, m_pipes,
                                                    [this] { m_primary.reset(); });
        ext_data_control_device_v1_set_primary_selection(m_device.get(), source->get());
        m_primary = std::move(source);
    }
    m_connection->whenDone(done);
}

void DataControlDispatcher::settle(const std::function<void()>& done)
{
    // News of every copy made before our request comes before the answer to it.
    m_connection->whenDone([this, done] {
        m_settling.push_back(done);
        m_reader.hurry(lastStepTimeout);
        tellWaiting();
    });
}

void DataControlDispatcher::handOver(const std::function<void()>& done)
{
    m_isLeaving = true;
    done();
}

std::vector<pollfd> DataControlDispatcher::sources() const
{
    std::vector<pollfd> sources{{wl_display_get_fd(m_connection->get()), m_connection->events(), 0}};
    m_reader.collectSources(sources);
    m_pipes.collectSources(sources);
    return sources;
}

bool DataControlDispatcher::handleEvents()
{
    // First what was copied, then that something else has been: the two may have come at the same time.
    m_reader.serve();
    m_pipes.serve();
    m_connection->serve();
    return false;
}

std::optional<DataControlDispatcher::Clock::time_point> DataControlDispatcher::deadline() const
{
    const auto reading = m_reader.deadline();
    const auto writing = m_pipes.deadline();
    return reading && writing ? std::min(reading, writing) : std::max(reading, writing);
}

void DataControlDispatcher::expire(Clock::time_point now)
{
    m_reader.expire(now);
    m_pipes.expire(now);
}

/// Of what came to the compositor at the same time it may take our question first, and what came from others next. When
/// it takes another question, it has taken that as well.
void DataControlDispatcher::afterNews(const std::function<void()>& done)
{
    m_connection->whenDone([this, done] { m_connection->whenDone(done); });
}

void DataControlDispatcher::offerCame(ext_data_control_offer_v1* offer)
{
    static constexpr ext_data_control_offer_v1_listener listener{
        [](void* self, ext_data_control_offer_v1* of, const char* type) {
            static_cast<DataControlDispatcher*>(self)->typeCame(of, type);
        },
    };
    m_offers[offer];
    ext_data_control_offer_v1_add_listener(offer, &listener, this);
}

void DataControlDispatcher::typeCame(ext_data_control_offer_v1* offer, const QByteArray& type)
{
    const auto found = m_offers.find(offer);
    // A program may add types to what it has copied, and Plasma's compositor passes them on.
    if (found == m_offers.end())
        return m_reader.learn(offer, type);
    // A mark counts wherever it stands. The compositor cuts off who takes in a long list too slowly: nothing more is
    // looked at here.
    Types& types = found->second;
    if (types.size() < maxTargets)
        types.push_back(type);
    else if (m_reader.isMark(type))
        types.back() = type;
}

DataControlDispatcher::Types DataControlDispatcher::takeTypes(ext_data_control_offer_v1* offer)
{
    const auto found = m_offers.find(offer);
    if (found == m_offers.end())
        return {};
    Types types = std::move(found->second);
    m_offers.erase(found);
    return types;
}

void DataControlDispatcher::primaryChanged(ext_data_control_offer_v1* offer)
{
    if (offer == nullptr)
        return;
    m_offers.erase(offer);
    ext_data_control_offer_v1_destroy(offer);
}

void DataControlDispatcher::selectionChanged(ext_data_control_offer_v1* offer)
{
    // Had the last owner ended, nothing would have come first.
    if (offer != nullptr)
        m_reader.trust();
    if (m_hasWatched) {
        m_isInitial = false;
        m_known.reset();
    }
    if (offer == nullptr) {
        ownerGone();
        return;
    }
    DataControlOffer owned(offer);
    const Types types = takeTypes(offer);
    if (std::ranges::find(types, m_ownMark) != types.end())
        m_reader.cancel();
    else
        m_reader.start(std::move(owned), types);
    tellWaiting();
}

/// Its owner has ended, or has cleared it; nobody says which. What was read of its content takes its place: to lose
/// what was copied would be worse than to bring back what was cleared. Of what bears a mark nothing was read.
void DataControlDispatcher::ownerGone()
{
    if (m_clipboard)
        return; // of the time before it was ours
    if (m_reader.hasContent() && !m_isLeaving) {
        const SelectionForms forms = m_reader.keptForms();
        take(forms);
        return;
    }
    m_reader.cancel();
    if (m_hasWatched)
        publish({});
    tellWaiting();
}

void DataControlDispatcher::tellWaiting()
{
    if (m_reader.isBusy() && !m_reader.content())
        return;
    for (const auto& done : std::exchange(m_settling, {}))
        done();
}

void DataControlDispatcher::publish(const SelectionContent& content)
{
    if (m_isLeaving)
        return;
    const bool isKnown = std::exchange(m_known, {}) == content;
    m_publish({content, m_writes, m_isInitial || isKnown});
}

} // namespace Clipboard::Wayland
