#pragma once

#include "lid/MachineConditions.h"

#include <memory>

namespace wakeloft {

/// Tells when the displays changed, and whatever changed about the power sources, their charge included.
class SystemMachineConditionsNotifier final : public MachineConditionsNotifier {
  public:
    SystemMachineConditionsNotifier();
    SystemMachineConditionsNotifier(const SystemMachineConditionsNotifier&) = delete;
    SystemMachineConditionsNotifier& operator=(const SystemMachineConditionsNotifier&) = delete;
    ~SystemMachineConditionsNotifier() override;

    void observe(std::function<void()> handler) override;

  private:
    struct Observation;
    void stopObserving();

    std::unique_ptr<Observation> observation_; ///< none before the first `observe`
};

} // namespace wakeloft
