#pragma once

#include "ClipboardDispatcher.h"
#include "DataControl.h"
#include "OfferReader.h"
#include "OfferSource.h"
#include "OutgoingPipes.h"

#include <map>
#include <memory>
#include <vector>

namespace Clipboard::Wayland {

/// The clipboard of a Wayland compositor, over its data control protocol.
class DataControlDispatcher final : public ClipboardDispatcher
{
public:
    struct Options
    {
        OfferReader::Options reading;
        std::chrono::milliseconds writeTimeout = writeStepTimeout;
    };

    /// What one connection leaves to the next when it is lost.
    struct Remains
    {
        std::optional<SelectionForms> own; // what we had on the clipboard
        quint64 writes = 0;
        std::optional<SelectionForms> unfinishedWrite; // on its way to the clipboard
        quint64 unfinishedNumber = 0;
        std::optional<SelectionContent> known; // what another program had there
    };

    /// Begins to watch: every copy made after it returns is seen. Null when the compositor cannot be reached or lets no
    /// program follow its clipboard. With what an earlier one left, its content is offered again unless there is
    /// another by now, which then is a change.
    [[nodiscard]] static std::unique_ptr<DataControlDispatcher> open(const QByteArray& display, const Options& options,
                                                                     PublishFunction publish, const Remains* remains);
    ~DataControlDispatcher() override;

    [[nodiscard]] bool isAlive() const override { return m_device != nullptr && !m_connection->isBroken(); }
    [[nodiscard]] std::any remains() const override;

    [[nodiscard]] std::vector<pollfd> sources() const override;
    bool handleEvents() override;
    [[nodiscard]] std::optional<Clock::time_point> deadline() const override;
    void expire(Clock::time_point now) override;

    void own(const SelectionForms& forms, quint64 write) override;
    void afterWrites(bool primaryToo, const std::function<void()>& done) override;
    void settle(const std::function<void()>& done) override;
    /// There is nobody to leave it with: the content of a program that has ended is the compositor's business.
    void handOver(const std::function<void()>& done) override;

private:
    using Types = std::vector<QByteArray>;

    DataControlDispatcher(std::unique_ptr<WaylandConnection> connection, const Options& options,
                          PublishFunction publish);

    [[nodiscard]] bool watch(const Remains* remains);
    void take(const SelectionForms& forms);
    void offerCame(ext_data_control_offer_v1* offer);
    void typeCame(ext_data_control_offer_v1* offer, const QByteArray& type);
    void selectionChanged(ext_data_control_offer_v1* offer);
    void primaryChanged(ext_data_control_offer_v1* offer);
    void ownerGone();
    void afterNews(const std::function<void()>& done);
    [[nodiscard]] Types takeTypes(ext_data_control_offer_v1* offer);
    /// Tells those that wait for the reading to come to an end.
    void tellWaiting();
    void publish(const SelectionContent& content);

    std::unique_ptr<WaylandConnection> m_connection; // the objects below live on it
    PublishFunction m_publish;
    DataControlManager m_manager;
    Seat m_seat;
    DataControlDevice m_device; // null once the compositor has ended it
    QByteArray m_ownMark;
    OutgoingPipes m_pipes;
    std::unique_ptr<OfferSource> m_clipboard; // null while the clipboard is not ours
    std::unique_ptr<OfferSource> m_primary;
    std::map<ext_data_control_offer_v1*, Types> m_offers; // announced; the types of one selection come first
    OfferReader m_reader;
    quint64 m_writes = 0;
    std::optional<SelectionForms> m_unfinishedWrite;
    quint64 m_unfinishedNumber = 0;
    bool m_isInitial = true;   // what there is was there when we came
    bool m_hasWatched = false; // we have heard what was there
    bool m_isLeaving = false;
    std::optional<SelectionContent> m_known; // see Remains
    std::vector<std::function<void()>> m_settling;
};

} // namespace Clipboard::Wayland
