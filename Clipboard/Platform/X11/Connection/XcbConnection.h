#pragma once

#include <QByteArray>
#include <QHash>

#include <xcb/xcb.h>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

namespace Clipboard::X11 {

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};
/// A reply, event or error that xcb hands out with malloc().
template <typename T>
using XcbPointer = std::unique_ptr<T, FreeDeleter>;

/// Values such as atoms, as they stand in a property of format 32.
template <typename T>
[[nodiscard]] QByteArray bytesOf(const std::vector<T>& values)
{
    return {reinterpret_cast<const char*>(values.data()), static_cast<qsizetype>(values.size() * sizeof(T))};
}

/// One connection to the X server and the atoms known on it. Belongs to the thread that uses it.
class XcbConnection final
{
public:
    /// Connects; null when the display cannot be reached. An empty name means $DISPLAY.
    [[nodiscard]] static std::unique_ptr<XcbConnection> open(const QByteArray& display);
    ~XcbConnection();
    XcbConnection(const XcbConnection&) = delete;
    XcbConnection& operator=(const XcbConnection&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return m_connection; }
    [[nodiscard]] int screenNumber() const { return m_screenNumber; }
    [[nodiscard]] xcb_window_t root() const { return m_root; }
    [[nodiscard]] int fileDescriptor() const { return xcb_get_file_descriptor(m_connection); }
    /// True once the server has gone away.
    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(m_connection) != 0; }
    void flush() { xcb_flush(m_connection); }
    /// Returns when the server has carried out everything sent so far.
    void synchronize();
    [[nodiscard]] bool hasExtension(xcb_extension_t* extension) const;

    /// The atom of a name, made when it does not exist yet. XCB_ATOM_NONE when the connection is broken.
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name);
    /// Asks for several atoms in one round trip, so that atom() has them at hand.
    void preloadAtoms(std::initializer_list<const char*> names);
    /// The names of atoms, in one round trip for those not met before; empty for one that does not exist.
    [[nodiscard]] std::vector<QByteArray> atomNames(std::span<const xcb_atom_t> atoms);

    /// The property's value, at most `maxWords` 32-bit words of it; null when the window is gone.
    [[nodiscard]] XcbPointer<xcb_get_property_reply_t> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                                                uint32_t maxWords) const;
    /// A property of window or atom ids or cardinals; empty when it is absent or of another shape.
    [[nodiscard]] std::vector<uint32_t> words(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                              uint32_t maxWords) const;
    /// XCB_WINDOW_NONE when nobody owns the selection.
    [[nodiscard]] xcb_window_t selectionOwner(xcb_atom_t selection) const;
    /// True when the same client has made them: their ids begin with what the server gave to it alone.
    [[nodiscard]] bool areOfOneClient(xcb_window_t one, xcb_window_t other) const;
    /// True for a window that this connection has made.
    [[nodiscard]] bool isOurs(xcb_window_t window) const;
    /// A window that is never shown, for talking to other clients.
    [[nodiscard]] xcb_window_t createHiddenWindow(uint32_t eventMask);

private:
    XcbConnection(xcb_connection_t* connection, int screenNumber);

    xcb_connection_t* m_connection;
    int m_screenNumber;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    QHash<xcb_atom_t, QByteArray> m_names;
};

} // namespace Clipboard::X11
