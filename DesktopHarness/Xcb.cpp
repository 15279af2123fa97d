#include "Xcb.h"

#include <vector>

namespace Clipboard::Testing::Xcb {

namespace {

constexpr uint32_t propertyLength = 4096; // 32-bit units; more than any title, class or list of windows is long

const xcb_screen_t& screen(xcb_connection_t* connection)
{
    return *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

} // namespace

xcb_window_t root(xcb_connection_t* connection)
{
    return screen(connection).root;
}

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const Pointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QByteArray atomName(xcb_connection_t* connection, xcb_atom_t atom)
{
    const Pointer<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    return reply ? QByteArray(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()))
                 : QByteArray();
}

QByteArray property(xcb_connection_t* connection, xcb_window_t window, const QByteArray& name)
{
    const auto cookie =
        xcb_get_property(connection, 0, window, atom(connection, name), XCB_ATOM_ANY, 0, propertyLength);
    const Pointer<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

QByteArray allProperties(xcb_connection_t* connection)
{
    QByteArray all;
    std::vector<xcb_window_t> windows{root(connection)};
    while (!windows.empty()) {
        const xcb_window_t window = windows.back();
        windows.pop_back();
        const Pointer<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
        const Pointer<xcb_list_properties_reply_t> listed(
            xcb_list_properties_reply(connection, xcb_list_properties(connection, window), nullptr));
        if (!tree || !listed)
            continue; // it is gone
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        windows.insert(windows.end(), children, children + xcb_query_tree_children_length(tree.get()));
        const xcb_atom_t* atoms = xcb_list_properties_atoms(listed.get());
        for (int i = 0; i < xcb_list_properties_atoms_length(listed.get()); ++i) {
            const QByteArray name = atomName(connection, atoms[i]);
            all += name + ' ' + property(connection, window, name) + '\n';
        }
    }
    return all;
}

xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection)
{
    const auto cookie = xcb_get_selection_owner(connection, selection);
    const Pointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_window_t createHiddenWindow(xcb_connection_t* connection, uint32_t eventMask)
{
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(connection, 0, window, root(connection), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      screen(connection).root_visual, XCB_CW_EVENT_MASK, &eventMask);
    return window;
}

void synchronize(xcb_connection_t* connection)
{
    Pointer<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

} // namespace Clipboard::Testing::Xcb
