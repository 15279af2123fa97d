#include "SpareKey.h"

#include <X11/keysym.h>

#include <iterator>
#include <utility>

namespace Clipboard::X11 {

namespace {

/// What Shift makes of it. The symbols of Latin letters are their characters.
xcb_keysym_t shifted(xcb_keysym_t symbol)
{
    return symbol >= XK_a && symbol <= XK_z ? symbol - XK_a + XK_A : symbol;
}

} // namespace

SpareKey::SpareKey(std::shared_ptr<X11Session> session, xcb_keycode_t key, xcb_keysym_t symbol)
    : m_session(std::move(session))
    , m_key(key)
    , m_symbol(symbol)
{
    m_session->setLentKey(key);
    bear(symbol);
}

SpareKey::~SpareKey()
{
    bear(XCB_NO_SYMBOL);
    m_session->setLentKey(0);
}

void SpareKey::bear(xcb_keysym_t symbol)
{
    const xcb_keysym_t levels[] = {symbol, shifted(symbol)};
    xcb_change_keyboard_mapping(m_session->xcb(), 1, m_key, std::size(levels), levels);
    m_session->connection().synchronize();
}

} // namespace Clipboard::X11
