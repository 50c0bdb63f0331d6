#pragma once

#include "session/DeadlineRecheckNotifier.h"

#include <memory>

namespace wakeloft {

/// Tells after each wake and each time the wall clock was set.
class SystemDeadlineRecheckNotifier final : public DeadlineRecheckNotifier {
  public:
    SystemDeadlineRecheckNotifier();
    SystemDeadlineRecheckNotifier(const SystemDeadlineRecheckNotifier&) = delete;
    SystemDeadlineRecheckNotifier& operator=(const SystemDeadlineRecheckNotifier&) = delete;
    ~SystemDeadlineRecheckNotifier() override;

    void observe(std::function<void()> handler) override;

  private:
    void stopObserving();

    struct Observation;
    std::unique_ptr<Observation> observation_;
};

} // namespace wakeloft
