#include "SdEventInQt.h"

#include <QAbstractEventDispatcher>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace wakeloft {

SdEventInQt::SdEventInQt(sd_event* event)
    : event_(event), notifier_(sd_event_get_fd(event), QSocketNotifier::Read) {
    connect(&notifier_, &QSocketNotifier::activated, this, &SdEventInQt::run);
    // What Qt's own events have asked of the sd-event loop is armed before Qt waits.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &SdEventInQt::run);
}

// Handles all that is due and leaves the loop armed, so that its descriptor tells the next event.
void SdEventInQt::run() {
    if (isRunning_)
        return;
    isRunning_ = true;
    int result = 0;
    if (sd_event_get_state(event_) == SD_EVENT_ARMED)
        result = sd_event_wait(event_, 0);
    bool isArmed = false;
    while (result >= 0 && !isArmed) {
        if (sd_event_get_state(event_) == SD_EVENT_PENDING) {
            result = sd_event_dispatch(event_);
        } else if (sd_event_get_state(event_) == SD_EVENT_INITIAL) {
            result = sd_event_prepare(event_);
            isArmed = result == 0;
        } else {
            break; // finished
        }
    }
    isRunning_ = false;
    if (result < 0) {
        // Without this loop no session would end: better to stop, which lets every inhibitor go.
        std::fprintf(stderr, "Wakeloft: its event loop has failed: %s.\n", std::strerror(-result));
        std::abort();
    }
}

} // namespace wakeloft
