#pragma once

#include "HotKeyGrabber.h"

namespace Clipboard::Testing {

/// A hot key that the test presses. With a `refusal` another program has it already.
class FakeHotKeyGrabber final : public HotKeyGrabber
{
public:
    void grab() override
    {
        ++grabs;
        if (!refusal.isEmpty())
            emit failed(refusal);
    }
    void press() { emit pressed(); }

    int grabs = 0;
    QString refusal;
};

} // namespace Clipboard::Testing
