#pragma once

#include <QCursor>
#include <QMargins>
#include <QObject>
#include <QScreen>
#include <QWindow>

#include <optional>

namespace Clipboard {

/// What the panel needs of the window manager beyond Qt: to take the keyboard without taking the place of the
/// application in front.
class WindowSystem : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    enum class Role {
        panel,  // above all windows, in no task bar or pager
        dialog, // takes the keyboard and stands in the middle
        notice  // above all windows, never with the keyboard
    };
    /// Tells what a window is there for. Call after its native window exists, before it is first shown.
    virtual void prepare(QWindow* window, Role role) = 0;
    /// Tells which margin of the window holds nothing but its shadow, in logical pixels. The window manager keeps the
    /// rest on the screen, and a compositor draws no frame around the margin. Call after its native window exists.
    virtual void setShadow(QWindow* window, const QMargins& shadow) = 0;
    /// Remembers the window that has the focus now as the one that gets it back.
    virtual void rememberFrontWindow() = 0;
    /// Raises a window of ours and gives it the keyboard although the user is working in another program.
    virtual void activate(QWindow* window) = 0;
    /// Gives the focus back to the remembered window, if it still exists and nothing else took it since.
    virtual void restoreFrontWindow() = 0;
    /// The screen where the user works: that of the active window, or else the pointer's; null when neither is known.
    [[nodiscard]] virtual QScreen* workScreen() const = 0;
    /// Where the pointer is; nothing where programs are not told.
    [[nodiscard]] virtual std::optional<QPoint> pointer() const { return QCursor::pos(); }
    /// True when translucent windows are composited; without that, corners are cut and shadows left out.
    [[nodiscard]] virtual bool isCompositing() const = 0;
    /// True when a whole window can be more or less opaque; without that, none fades in or out.
    [[nodiscard]] virtual bool canFade() const { return isCompositing(); }

    /// True when the panel has lost the keyboard, or is about to, merely because the pointer came upon another window,
    /// where the desktop gives the keyboard to what the pointer is over.
    [[nodiscard]] virtual bool isFocusAtPointer() const { return false; }

signals:
    void compositingChanged();
    /// The open panel is on that screen, where the desktop chooses it and tells when it is done.
    void panelScreenChosen(QScreen* screen);
    /// The user clicked beside the open panel, or typed into another window once the panel had the keyboard. Told where
    /// isFocusAtPointer() may be true.
    void userWorked();
};

} // namespace Clipboard
