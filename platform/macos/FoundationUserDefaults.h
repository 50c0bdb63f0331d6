#pragma once

#include "support/UserDefaults.h"

namespace wakeloft {

/// The app's standard user defaults.
class FoundationUserDefaults final : public UserDefaults {
  public:
    [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override;
    void set(const std::string& key, DefaultsValue value) override;
    void remove(const std::string& key) override;
};

} // namespace wakeloft
