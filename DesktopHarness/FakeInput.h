#pragma once

#include "WaylandClient.h"
#include "WaylandKeyboard.h"

#include <QPoint>

struct org_kde_kwin_fake_input;

namespace Clipboard::Testing {

/// Keyboard and mouse of a kwin session.
class FakeInput final : public WaylandKeyboard
{
public:
    explicit FakeInput(VirtualSession& session);
    ~FakeInput() override;

    [[nodiscard]] bool isPluggedIn() const override { return m_input != nullptr; }
    void movePointer(QPoint place);
    /// Left, middle and right are 1, 2 and 3.
    void setButton(int button, bool isDown);
    /// By one notch, away from the person.
    void turnWheel();

private:
    void send(quint32 key, quint32 modifiers) override;

    WaylandClient m_client;
    org_kde_kwin_fake_input* m_input = nullptr;
};

} // namespace Clipboard::Testing
