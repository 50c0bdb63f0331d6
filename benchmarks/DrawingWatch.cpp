#include "DrawingWatch.h"

#include "Fail.h"

#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <optional>

namespace wakeloft {

namespace {

constexpr auto patience = std::chrono::seconds(10);
constexpr auto silence = std::chrono::milliseconds(333);

struct Free {
    void operator()(void* memory) const { free(memory); } // NOLINT: as xcb asks
};
template <class Message>
using Received = std::unique_ptr<Message, Free>;

} // namespace

void DrawingWatch::Close::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

DrawingWatch::DrawingWatch() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0)
        fail("The display cannot be reached.");
    const auto* extension = xcb_get_extension_data(connection_.get(), &xcb_damage_id);
    if (extension == nullptr || extension->present == 0)
        fail("The display does not tell what is drawn.");
    damageEvent_ = extension->first_event;
    const Received<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
        connection_.get(),
        xcb_damage_query_version(connection_.get(), XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION),
        nullptr));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.get(), root, XCB_CW_EVENT_MASK, &events);
    const Received<xcb_get_input_focus_reply_t> answered(
        xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()),
                                  nullptr)); // from here on nothing is missed
    if (version == nullptr || answered == nullptr)
        fail("The display does not answer.");
}

void DrawingWatch::watch(std::uint32_t window) {
    xcb_damage_create(connection_.get(), xcb_generate_id(connection_.get()), window,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(connection_.get());
}

DrawingWatch::Drawing DrawingWatch::waitForDrawing() {
    std::optional<Drawing> drawing;
    const auto end = Clock::now() + patience;
    while (!drawing || Clock::now() < drawing->end + silence) {
        if (Clock::now() > end)
            fail(drawing ? "The drawing does not end." : "Nothing was drawn.");
        pollfd descriptor{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
        poll(&descriptor, 1, 10);
        const auto arrival = Clock::now();
        while (const Received<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
            const int type = event->response_type & 0x7f;
            if (type == XCB_CREATE_NOTIFY)
                watch(reinterpret_cast<const xcb_create_notify_event_t&>(*event).window);
            if (type != damageEvent_ + XCB_DAMAGE_NOTIFY)
                continue;
            const auto& area = reinterpret_cast<const xcb_damage_notify_event_t&>(*event).area;
            const Drawing before = drawing.value_or(Drawing{});
            drawing = {arrival, std::max<int>(before.width, area.width),
                       std::max<int>(before.height, area.height)};
        }
        if (xcb_connection_has_error(connection_.get()) != 0)
            fail("The display is gone.");
    }
    return *drawing;
}

} // namespace wakeloft
