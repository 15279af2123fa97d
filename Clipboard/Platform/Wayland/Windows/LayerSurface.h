#pragma once

#include "LayerPlacement.h"
#include "LayerShell.h"

#include <QObject>
#include <QWindow>

#include <functional>
#include <memory>

struct zwlr_layer_surface_v1;

namespace Clipboard::Wayland {

/// Makes a window of the toolkit a surface above all windows, which the program places itself, each time that it is
/// shown. The window owns it; there must be nothing of it on the screen yet.
class LayerSurface final : public QObject
{
    Q_OBJECT
public:
    enum class Keyboard { none, exclusive };
    enum class Place {
        asSet,     // where the window's geometry says
        centred,   // in the middle of the output
        everywhere // over all that bars leave of the output; told by extentChanged()
    };
    struct Manner
    {
        Keyboard keyboard = Keyboard::none;
        Place place = Place::asSet;
        bool takesPointer = true;
        /// Asked each time that it is shown. Null leaves that to the compositor.
        std::function<QScreen*()> screen;
    };
    LayerSurface(std::shared_ptr<LayerShell> shell, QWindow* window, Manner manner);
    ~LayerSurface() override;

    /// The margin of the window that holds nothing but its shadow: the pointer is for what is beneath.
    void setShadow(const QMargins& shadow);
    /// Where the window without its shadow is in a free part of that size of its output. Nothing while it is not shown.
    [[nodiscard]] QRect frameIn(QSize extent) const;

    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    void placed();
    void extentChanged(QSize extent);

private slots: // by name: the signals are those of a class whose header nobody ships
    void attach();
    void detach();

private:
    void configure(uint32_t serial, QSize extent);
    void awaitConfigure(WaitingQueue& queue);
    void place();
    [[nodiscard]] QRect measuredArea() const;
    void limitPointer();
    void report();

    std::shared_ptr<LayerShell> m_shell;
    QWindow* m_window;
    Manner m_manner;
    zwlr_layer_surface_v1* m_surface = nullptr; // while the window is shown
    LayerPlacement m_placement;
    QMargins m_shadow;
    quint32 m_showing = 0; // its number among all of all windows
    bool m_isShowing = false;
    bool m_isConfigured = false;
};

} // namespace Clipboard::Wayland
