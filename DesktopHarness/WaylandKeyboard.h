#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

struct xkb_context;
struct xkb_keymap;

namespace Clipboard::Testing {

class VirtualSession;

/// An American keyboard of a Wayland session. How its keys come to the compositor is the business of the classes below
/// this one.
class WaylandKeyboard
{
public:
    // The real modifiers of every keymap (X Keyboard Extension, section 2.2).
    enum Modifier : quint32 { shift = 1, control = 4, alt = 8, super = 64 };

    WaylandKeyboard();
    virtual ~WaylandKeyboard();
    Q_DISABLE_COPY_MOVE(WaylandKeyboard)

    /// False when the compositor takes no keyboard.
    [[nodiscard]] virtual bool isPluggedIn() const = 0;
    /// Presses and releases a key, "super+shift+v" or by its name in X11. It ends the
    /// program when the keyboard has no such key.
    void press(const QString& chord);
    void type(const QString& text);

protected:
    [[nodiscard]] QByteArray keymap() const;
    /// Presses and releases the key, by the kernel's number.
    virtual void send(quint32 key, quint32 modifiers) = 0;

private:
    struct Key;
    [[nodiscard]] std::optional<Key> find(quint32 symbol) const;
    void sendSymbol(quint32 symbol, quint32 modifiers);

    std::unique_ptr<xkb_context, void (*)(xkb_context*)> m_context;
    std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> m_keymap;
};

} // namespace Clipboard::Testing
