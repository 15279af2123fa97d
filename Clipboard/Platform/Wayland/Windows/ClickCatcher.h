#pragma once

#include "LayerShell.h"

#include <QWindow>

#include <memory>

class QDragEnterEvent;
struct wp_viewport;

namespace Clipboard::Wayland {

/// Glass over one screen, which hears of a click beside the panel: where windows are the compositor's, nothing else
/// tells of it. What it hears reaches no window; what is dragged out of the panel does.
class ClickCatcher final : public QWindow
{
    Q_OBJECT
public:
    ClickCatcher(std::shared_ptr<LayerShell> shell, QScreen* screen);
    ~ClickCatcher() override;

    /// How much of the screen is covered; bars are beside it.
    [[nodiscard]] QSize extent() const { return m_extent; }
    /// Lets through what happens there.
    void spare(const QRect& part);

signals:
    void clicked();

protected:
    bool event(QEvent* event) override;

private:
    void cover(QSize extent);
    void stepAside(const QDragEnterEvent& event);
    void setAside(bool isAside);
    void applyRegion();

    std::shared_ptr<LayerShell> m_shell;
    wl_buffer* m_glass;
    wp_viewport* m_viewport = nullptr;
    QSize m_extent;
    QRect m_spared;
    bool m_isAside = false;
};

} // namespace Clipboard::Wayland
