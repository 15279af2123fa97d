#pragma once

#include <QMargins>
#include <QObject>
#include <QScreen>
#include <QWindow>

namespace Clipboard {

/// What the panel needs of the window manager beyond Qt: to take the keyboard without taking the place of the
/// application in front.
class WindowSystem : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Keeps the window out of task bars and pagers. Call after its native window exists, before it is first shown.
    virtual void prepareUtilityWindow(QWindow* window) = 0;
    /// Tells which margin of the window holds nothing but its shadow, in logical pixels. The window manager keeps the
    /// rest on the screen, and a compositor draws no frame around the margin. Call after its native window exists.
    virtual void setShadow(QWindow* window, const QMargins& shadow) = 0;
    /// Remembers the window that has the focus now as the one that gets it back.
    virtual void rememberFrontWindow() = 0;
    /// Gives the keyboard to a window of ours although the user is working in another program.
    virtual void activate(QWindow* window) = 0;
    /// Gives the focus back to the remembered window, if it still exists and nothing else took it since.
    virtual void restoreFrontWindow() = 0;
    /// The screen where the user works: that of the active window, or else the pointer's; null when neither is known.
    [[nodiscard]] virtual QScreen* workScreen() const = 0;
    /// True when translucent windows are composited; without that, corners are cut and shadows left out.
    [[nodiscard]] virtual bool isCompositing() const = 0;

signals:
    void compositingChanged();
};

} // namespace Clipboard
