#pragma once

#include "session/SleepBlocker.h"

#include <cstdint>
#include <optional>
#include <string>

namespace wakeloft {

/// A power assertion that prevents idle sleep. Nobody can take it away, and it ends with the process. Main
/// thread.
class IOKitSleepBlocker final : public SleepBlocker {
  public:
    /// `reason` is what the system lists the assertion under.
    explicit IOKitSleepBlocker(std::string reason) : reason_(std::move(reason)) {}
    IOKitSleepBlocker(const IOKitSleepBlocker&) = delete;
    IOKitSleepBlocker& operator=(const IOKitSleepBlocker&) = delete;
    ~IOKitSleepBlocker() override { release(); }

    std::expected<void, Error> engage() override;
    void release() override;
    [[nodiscard]] bool isEngaged() const override { return assertionId_.has_value(); }

  private:
    std::optional<std::uint32_t> assertionId_;
    std::string reason_;
};

} // namespace wakeloft
