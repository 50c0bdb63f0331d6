#pragma once

#include "BusConnection.h"
#include "BusDeadline.h"
#include "lid/LidHelperRegistration.h"

#include <functional>

namespace wakeloft {

/// How the helper stands on the system bus: there when its name is owned or can be started, enabled when
/// polkit would also let this session in. Main thread.
class BusLidHelperRegistration final : public LidHelperRegistration {
  public:
    /// `trouble` is told what could not be asked. `systemBus` must outlive the registration.
    BusLidHelperRegistration(BusConnection& systemBus, std::function<void(const PlatformError&)> trouble)
        : systemBus_(systemBus), trouble_(std::move(trouble)) {}

    /// Waits for the answers of two or three calls, one second in all; on a healthy bus it takes a few
    /// milliseconds. A bus that is not open yet is opened first.
    /// Not found where the bus does not answer. Enabled where polkit does not: the helper asks it too, and
    /// its refusal says why.
    [[nodiscard]] LidHelperStatus status() const override;
    /// Fails: on this system the helper comes with its package, and nothing else can put it in place.
    std::expected<void, Error> registerHelper() override;

  private:
    static std::expected<bool, PlatformError> isThere(sd_bus* bus, const BusDeadline& deadline);
    static std::expected<bool, PlatformError> isAllowed(sd_bus* bus, const BusDeadline& deadline);

    BusConnection& systemBus_;
    std::function<void(const PlatformError&)> trouble_;
};

} // namespace wakeloft
