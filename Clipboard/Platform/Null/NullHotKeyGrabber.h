#pragma once

#include "HotKeyGrabber.h"

namespace Clipboard {

/// A session in which no key can be had from everywhere; asking for it fails with the reason.
class NullHotKeyGrabber final : public HotKeyGrabber
{
public:
    explicit NullHotKeyGrabber(const QString& reason)
        : m_reason(reason)
    {
    }

    void grab() override { emit failed(m_reason); }

private:
    QString m_reason;
};

} // namespace Clipboard
