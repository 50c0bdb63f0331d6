#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace wakeloft {

struct FreeXcbReply {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using XcbReply = std::unique_ptr<Reply, FreeXcbReply>;

/// Qt's own connection to the display; null elsewhere than on X11.
xcb_connection_t* xcbConnection();

/// The whole screen's.
xcb_window_t rootWindow(xcb_connection_t* x);

xcb_atom_t xcbAtom(xcb_connection_t* x, const std::string& name);

/// `name` with the number of the screen at its end, as the selections of a screen's services have it.
xcb_atom_t xcbScreenSelection(xcb_connection_t* x, const std::string& name);

/// XCB_WINDOW_NONE where nobody owns it.
xcb_window_t xcbSelectionOwner(xcb_connection_t* x, xcb_atom_t selection);

} // namespace wakeloft
