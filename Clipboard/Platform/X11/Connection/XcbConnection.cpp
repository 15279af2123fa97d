#include "XcbConnection.h"

#include <utility>

namespace Clipboard::X11 {

namespace {

// Names met in foreign target lists. A client that invents names without end must not fill our memory.
constexpr qsizetype maxRememberedNames = 4096;
// Nor must one whose names are long, up to 64 KiB each: no type, with its parameters, is longer than this.
constexpr int longestName = 1024;

} // namespace

std::unique_ptr<XcbConnection> XcbConnection::open(const QByteArray& display)
{
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screenNumber);
    std::unique_ptr<XcbConnection> opened(new XcbConnection(connection, screenNumber));
    if (opened->isBroken())
        return nullptr;
    return opened;
}

XcbConnection::XcbConnection(xcb_connection_t* connection, int screenNumber)
    : m_connection(connection)
    , m_screenNumber(screenNumber)
{
    if (isBroken())
        return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
}

XcbConnection::~XcbConnection()
{
    xcb_disconnect(m_connection);
}

void XcbConnection::synchronize()
{
    XcbPointer<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

bool XcbConnection::hasExtension(xcb_extension_t* extension) const
{
    const auto* data = xcb_get_extension_data(m_connection, extension);
    return data != nullptr && data->present != 0;
}

xcb_atom_t XcbConnection::atom(const QByteArray& name)
{
    if (const auto known = m_atoms.constFind(name); known != m_atoms.constEnd())
        return known.value();
    const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    if (!reply)
        return XCB_ATOM_NONE;
    m_atoms.insert(name, reply->atom);
    return reply->atom;
}

void XcbConnection::preloadAtoms(std::initializer_list<const char*> names)
{
    std::vector<std::pair<QByteArray, xcb_intern_atom_cookie_t>> asked;
    for (const char* text : names) {
        QByteArray name(text);
        const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.constData());
        asked.emplace_back(std::move(name), cookie);
    }
    for (const auto& [name, cookie] : asked) {
        const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        if (reply)
            m_atoms.insert(name, reply->atom);
    }
}

std::vector<QByteArray> XcbConnection::atomNames(std::span<const xcb_atom_t> atoms)
{
    if (m_names.size() > maxRememberedNames)
        m_names.clear();
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
    for (const xcb_atom_t atom : atoms) {
        if (!m_names.contains(atom)) {
            m_names.insert(atom, {});
            asked.emplace_back(atom, xcb_get_atom_name(m_connection, atom));
        }
    }
    for (const auto& [atom, cookie] : asked) {
        const XcbPointer<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(m_connection, cookie, nullptr));
        const int length = reply ? xcb_get_atom_name_name_length(reply.get()) : 0;
        if (length > 0 && length <= longestName)
            m_names[atom] = QByteArray(xcb_get_atom_name_name(reply.get()), length);
    }
    std::vector<QByteArray> names;
    names.reserve(atoms.size());
    for (const xcb_atom_t atom : atoms)
        names.push_back(m_names.value(atom));
    return names;
}

XcbPointer<xcb_get_property_reply_t> XcbConnection::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                                             uint32_t maxWords) const
{
    const auto cookie = xcb_get_property(m_connection, 0, window, name, type, 0, maxWords);
    return XcbPointer<xcb_get_property_reply_t>(xcb_get_property_reply(m_connection, cookie, nullptr));
}

std::vector<uint32_t> XcbConnection::words(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                                           uint32_t maxWords) const
{
    const auto reply = property(window, name, type, maxWords);
    if (!reply || reply->format != 32 || reply->type != type)
        return {};
    const auto* first = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

xcb_window_t XcbConnection::selectionOwner(xcb_atom_t selection) const
{
    const auto cookie = xcb_get_selection_owner(m_connection, selection);
    const XcbPointer<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

bool XcbConnection::areOfOneClient(xcb_window_t one, xcb_window_t other) const
{
    const uint32_t ofClient = ~xcb_get_setup(m_connection)->resource_id_mask;
    return (one & ofClient) == (other & ofClient);
}

bool XcbConnection::isOurs(xcb_window_t window) const
{
    return areOfOneClient(window, xcb_get_setup(m_connection)->resource_id_base);
}

xcb_window_t XcbConnection::createHiddenWindow(uint32_t eventMask)
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
    return window;
}

} // namespace Clipboard::X11
