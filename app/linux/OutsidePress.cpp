#include "OutsidePress.h"

#include "Xcb.h"

#include <QCoreApplication>
#include <QMouseEvent>

#include <xcb/xinput.h>

#include <algorithm>
#include <string>
#include <utility>

namespace wakeloft {

namespace {

std::unexpected<PlatformError> failure(const char* what, int code) {
    return std::unexpected(
        PlatformError{"X11", code, std::string("Presses outside the panel cannot be seen: ") + what + "."});
}

bool isWheel(std::uint32_t button) {
    return button >= 4 && button <= 7;
}

xcb_window_t rootWindow(xcb_connection_t* connection, int screen) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen > 0 && screens.rem > 1; --screen)
        xcb_screen_next(&screens);
    return screens.data->root;
}

} // namespace

void OutsidePress::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

OutsidePress::OutsidePress(Events events) : events_(std::move(events)) {}

std::expected<void, PlatformError> OutsidePress::start() {
    if (isStarted())
        return {};
    int screen = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> opened(xcb_connect(nullptr, &screen));
    if (const int error = xcb_connection_has_error(opened.get()); error != 0)
        return failure("the display cannot be reached", error);
    const auto* extension = xcb_get_extension_data(opened.get(), &xcb_input_id);
    if (extension == nullptr || extension->present == 0)
        return failure("the display has no input extension", 0);
    const XcbReply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        opened.get(), xcb_input_xi_query_version(opened.get(), 2, 2), nullptr));
    if (!version || version->major_version < 2)
        return failure("its input extension is too old", 0);

    struct {
        xcb_input_event_mask_t header;
        std::uint32_t bits;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                 XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};
    xcb_input_xi_select_events(opened.get(), rootWindow(opened.get(), screen), 1, &mask.header);
    if (xcb_flush(opened.get()) <= 0)
        return failure("the display does not answer", xcb_connection_has_error(opened.get()));

    extensionOpcode_ = extension->major_opcode;
    connection_ = std::move(opened);
    readable_ =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()), QSocketNotifier::Read);
    QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(), [this] { readEvents(); });
    QCoreApplication::instance()->installEventFilter(this);
    return {};
}

void OutsidePress::stop() {
    QCoreApplication::instance()->removeEventFilter(this);
    ownPresses_.clear();
    if (readable_) {
        readable_->setEnabled(false);
        readable_.release()->deleteLater(); // this may be its own signal
    }
    connection_.reset();
}

bool OutsidePress::eventFilter(QObject* receiver, QEvent* event) {
    if (receiver->isWindowType() &&
        (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick))
        ownPresses_.push_back(static_cast<QMouseEvent*>(event)->timestamp());
    return false;
}

bool OutsidePress::isOwn(std::uint64_t pressTime) {
    const auto own = std::ranges::find(ownPresses_, pressTime);
    if (own == ownPresses_.end())
        return false;
    ownPresses_.erase(ownPresses_.begin(), own + 1); // those before it were heard of here first
    return true;
}

void OutsidePress::readEvents() {
    while (connection_) {
        const XcbReply<xcb_generic_event_t> event(xcb_poll_for_event(connection_.get()));
        if (!event) {
            if (xcb_connection_has_error(connection_.get()) != 0)
                stop(); // the display is gone, and Qt ends with it
            return;
        }
        if ((event->response_type & 0x7f) != XCB_GE_GENERIC)
            continue;
        const auto* button = reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event.get());
        if (button->extension != extensionOpcode_ || isWheel(button->detail))
            continue;
        if (button->event_type == XCB_INPUT_RAW_BUTTON_PRESS && !isOwn(button->time))
            events_.pressed();
        else if (button->event_type == XCB_INPUT_RAW_BUTTON_RELEASE)
            events_.released();
    }
}

} // namespace wakeloft
