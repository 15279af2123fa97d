#pragma once

#include <QByteArray>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

/// The few questions to an X server that a stranger to the program asks. None of it is the program's own code, so that
/// what is wrong there is not overlooked here.
namespace Clipboard::Testing::Xcb {

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};
/// A reply, event or error that xcb hands out with malloc().
template <typename T>
using Pointer = std::unique_ptr<T, FreeDeleter>;

[[nodiscard]] xcb_window_t root(xcb_connection_t* connection);
/// The atom of that name, made when it does not exist yet.
[[nodiscard]] xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name);
[[nodiscard]] QByteArray atomName(xcb_connection_t* connection, xcb_atom_t atom);
/// The property's bytes; empty when there is none.
[[nodiscard]] QByteArray property(xcb_connection_t* connection, xcb_window_t window, const QByteArray& name);
/// The names and bytes of all properties of all windows, one after the other.
[[nodiscard]] QByteArray allProperties(xcb_connection_t* connection);
/// XCB_WINDOW_NONE when nobody owns it.
[[nodiscard]] xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection);
/// A window that is never shown.
[[nodiscard]] xcb_window_t createHiddenWindow(xcb_connection_t* connection, uint32_t eventMask);
/// Returns when the server has carried out everything sent so far.
void synchronize(xcb_connection_t* connection);

} // namespace Clipboard::Testing::Xcb
