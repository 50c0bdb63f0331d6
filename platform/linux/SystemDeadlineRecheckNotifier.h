#pragma once

#include "BusConnection.h"
#include "session/DeadlineRecheckNotifier.h"

namespace wakeloft {

/// Tells after each wake (the login manager's PrepareForSleep(false)) and each time the wall clock was set.
class SystemDeadlineRecheckNotifier final : public DeadlineRecheckNotifier {
  public:
    /// `failed` is told what cannot be watched. `event` and `systemBus` must outlive the notifier.
    SystemDeadlineRecheckNotifier(sd_event* event, BusConnection& systemBus,
                                  std::function<void(const PlatformError&)> failed);
    ~SystemDeadlineRecheckNotifier() override;
    SystemDeadlineRecheckNotifier(const SystemDeadlineRecheckNotifier&) = delete;
    SystemDeadlineRecheckNotifier& operator=(const SystemDeadlineRecheckNotifier&) = delete;

    void observe(std::function<void()> handler) override;

  private:
    void watchWakes();
    void watchClock();
    int armClock() const;
    void clockWasSet();
    void tell() const;

    sd_event* event_;
    BusConnection& systemBus_;
    std::function<void(const PlatformError&)> failed_;
    std::function<void()> handler_;
    int clockDescriptor_ = -1;
    EventSource clockSource_;
    BusSlot wakeSlot_;
    Subscription reopened_;
};

} // namespace wakeloft
