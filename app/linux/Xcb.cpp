#include "Xcb.h"

#include <QGuiApplication>

#include <cstdint>
#include <map>

namespace wakeloft {

xcb_connection_t* xcbConnection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t* x) {
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

xcb_atom_t xcbAtom(xcb_connection_t* x, const std::string& name) {
    // A display numbers a name once, and the panel would wait for each of its questions as it opens.
    static std::map<std::string, xcb_atom_t> known;
    if (const auto found = known.find(name); found != known.end())
        return found->second;
    const auto cookie = xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr));
    return reply ? known[name] = reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_atom_t xcbScreenSelection(xcb_connection_t* x, const std::string& name) {
    int screen = 0;
    int display = 0;
    char* host = nullptr;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0)
        std::free(host);
    return xcbAtom(x, name + std::to_string(screen));
}

xcb_window_t xcbSelectionOwner(xcb_connection_t* x, xcb_atom_t selection) {
    const XcbReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection), nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

} // namespace wakeloft
