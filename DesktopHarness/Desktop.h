#pragma once

#include "ForeignOwner.h"

#include <QByteArray>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace Clipboard::Testing {

/// A desktop as a person sits at it, with a keyboard, a mouse, a screen and a clipboard. One driver for each kind of
/// desktop; what is told to it has happened, for the desktop, when the call returns.
class Desktop
{
public:
    struct Window
    {
        quint32 id = 0;
        QRect geometry; // on the screen
        QString title;
        bool isUnmanaged = false; // the window manager has no say in it: menus, notices, icons
    };

    Desktop() = default;
    virtual ~Desktop() = default;
    Q_DISABLE_COPY_MOVE(Desktop)

    /// Keys or chords such as "super+shift+v", one after the other.
    virtual void press(const QStringList& chords) = 0;
    virtual void type(const QString& text) = 0;
    virtual void movePointer(QPoint place) = 0;
    virtual void click(QPoint place, int times, int button) = 0;
    /// Away from the person, by that many notches, where the pointer is.
    virtual void turnWheel(int notches) = 0;
    /// Holds the left button down from the first place to the last.
    virtual void drag(const QList<QPoint>& path) = 0;
    /// The left button.
    virtual void pressButton() = 0;
    virtual void releaseButton() = 0;
    /// As themes name it: "left_ptr", "dnd-copy".
    [[nodiscard]] virtual QByteArray pointerShape() const = 0;

    /// Has another program copy that, and live on. `target` is the type as the desktop names it.
    virtual void copy(const QByteArray& content, const QString& target) = 0;
    /// Another program whose copies and manners are one's own choice.
    [[nodiscard]] virtual std::unique_ptr<ForeignOwner> otherProgram() = 0;
    /// What another program would paste.
    [[nodiscard]] virtual QByteArray pasted(const QString& target) = 0;

    /// The program and arguments that open a terminal of that title in which a shell runs the command.
    [[nodiscard]] virtual QStringList terminal(const QString& title, const QString& command) const = 0;
    /// The windows of a program that can be seen.
    [[nodiscard]] virtual QList<Window> windowsOf(const QByteArray& program) const = 0;
    /// Of the windows that a program reports those which this desktop does not list, but shows.
    [[nodiscard]] virtual QList<Window> unlisted(const QList<Window>& /*reported*/) const { return {}; }
    /// The window that has the keyboard; nothing when none has.
    [[nodiscard]] virtual std::optional<Window> activeWindow() const = 0;
    [[nodiscard]] virtual QSize size() const = 0;
    /// What the screen shows, to be compared.
    [[nodiscard]] virtual QByteArray pixels() const = 0;
    virtual void place(const Window& window, QRect geometry) = 0;
};

} // namespace Clipboard::Testing
