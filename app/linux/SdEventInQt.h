#pragma once

#include <systemd/sd-event.h>

#include <QObject>
#include <QSocketNotifier>

namespace wakeloft {

/// Lets Qt's event loop drive an sd-event loop through its descriptor. Handlers of the sd-event loop must not
/// run a Qt loop of their own: until they return, nothing else of theirs is told. Main thread.
class SdEventInQt : public QObject {
  public:
    /// After the application object. `event` must outlive it.
    explicit SdEventInQt(sd_event* event);

  private:
    void run();

    sd_event* event_;
    QSocketNotifier notifier_;
    bool isRunning_ = false;
};

} // namespace wakeloft
