#pragma once

#include "ContentReading.h"
#include "DataControl.h"
#include "SelectionLimits.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include <poll.h>

namespace Clipboard::Wayland {

/// Reads the offer of another program, form by form through a pipe each, never waiting for its owner.
class OfferReader final
{
public:
    using Clock = std::chrono::steady_clock;

    struct Options : ContentReading::Options
    {
        std::chrono::milliseconds stepTimeout = readStepTimeout;
        std::chrono::milliseconds formTimeout = readFormTimeout;
    };

    struct Callbacks
    {
        /// Hears each offer once, when its content is there or nothing can be had.
        std::function<void(const SelectionContent&)> onContent;
        /// Nothing more is going to be asked of its owner.
        std::function<void()> onSettled;
        /// Calls back when everything has been heard that the compositor has had to tell so far.
        std::function<void(std::function<void()>)> afterNews;
    };

    OfferReader(Options options, Callbacks callbacks);
    ~OfferReader() { cancel(); }
    OfferReader(const OfferReader&) = delete;
    OfferReader& operator=(const OfferReader&) = delete;

    /// Whether nothing may be read of what is offered with that type.
    [[nodiscard]] bool isMark(const QByteArray& type) const;
    /// Begins with a new offer; what was under way is dropped unheard.
    void start(DataControlOffer offer, const std::vector<QByteArray>& types);
    /// Its owner has added a type to what it offers. A mark ends the reading, and what was read is not kept.
    void learn(const ext_data_control_offer_v1* offer, const QByteArray& type);
    void cancel();
    /// Its owner has outlived what was read: a form whose end may have been the owner's is whole.
    void trust();
    /// Has less patience with the present owner from now on.
    void hurry(std::chrono::milliseconds stepTimeout);

    [[nodiscard]] bool isBusy() const { return m_pipe >= 0 || m_isDoubtful; }
    /// The content of the current offer; nothing while it is still to be found.
    [[nodiscard]] std::optional<SelectionContent> content() const;
    /// True when there is content that can be offered in its owner's place: complete, and no secret.
    [[nodiscard]] bool hasContent() const { return m_isPublished && !m_reading.keptForms().empty(); }
    [[nodiscard]] const SelectionForms& keptForms() const { return m_reading.keptForms(); }

    void collectSources(std::vector<pollfd>& sources) const;
    /// Takes what has arrived.
    void serve();
    [[nodiscard]] std::optional<Clock::time_point> deadline() const;
    void expire(Clock::time_point now);

private:
    void request(const QByteArray& type, qint64 maxBytes);
    /// Nothing when there may be more; true at the end of the form, false when it is of no use.
    [[nodiscard]] std::optional<bool> read();
    void doubt();
    void take();
    void closePipe();
    void next();
    void publish();

    Options m_options;
    Callbacks m_callbacks;

    DataControlOffer m_offer;
    ContentReading m_reading;
    bool m_isPublished = false;
    int m_pipe = -1; // our end; -1 while nothing is asked for
    QByteArray m_type;
    qint64 m_maxBytes = 0;
    QByteArray m_bytes;
    bool m_isDoubtful = false; // the bytes have come to an end, and nobody knows yet whether their owner has, too
    quint64 m_request = 0;     // the running number of the form
    std::chrono::milliseconds m_stepTimeout{};
    Clock::time_point m_stepEnd;
    Clock::time_point m_formEnd;
    Clock::time_point m_end;
};

} // namespace Clipboard::Wayland
