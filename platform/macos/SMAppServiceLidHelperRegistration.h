#pragma once

#include "lid/LidHelperRegistration.h"

#include <memory>

namespace wakeloft {

/// The helper as a launch daemon of the app's bundle.
class SMAppServiceLidHelperRegistration final : public LidHelperRegistration {
  public:
    /// `plistName` is the daemon's property list in the bundle.
    explicit SMAppServiceLidHelperRegistration(const std::string& plistName);
    SMAppServiceLidHelperRegistration(const SMAppServiceLidHelperRegistration&) = delete;
    SMAppServiceLidHelperRegistration& operator=(const SMAppServiceLidHelperRegistration&) = delete;
    ~SMAppServiceLidHelperRegistration() override;

    [[nodiscard]] LidHelperStatus status() const override;
    std::expected<void, Error> registerHelper() override;

  private:
    struct Service;
    std::unique_ptr<Service> service_;
};

} // namespace wakeloft
