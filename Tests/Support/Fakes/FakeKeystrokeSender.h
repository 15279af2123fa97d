#pragma once

#include "KeystrokeSender.h"

#include <utility>
#include <vector>

namespace Clipboard::Testing {

/// Notes what was asked of the keyboard. A paste stays under way until the test finishes it, unless `finishesAtOnce`.
class FakeKeystrokeSender final : public KeystrokeSender
{
public:
    [[nodiscard]] bool isTrusted() const override { return trusted; }
    void requestTrust() override { ++trustRequests; }
    [[nodiscard]] QString unavailableReason() const override { return reason; }
    void sendPaste(std::function<void(PasteResult)> done) override
    {
        ++pastes;
        if (finishesAtOnce)
            done(PasteResult::sent);
        else
            underWay.push_back(std::move(done));
    }
    /// Lets every paste under way end.
    void finishPastes(PasteResult result = PasteResult::sent)
    {
        const auto finished = std::exchange(underWay, {});
        for (const auto& done : finished)
            done(result);
    }

    bool trusted = true;
    bool finishesAtOnce = true;
    QString reason;
    int trustRequests = 0;
    int pastes = 0;
    std::vector<std::function<void(PasteResult)>> underWay;
};

} // namespace Clipboard::Testing
