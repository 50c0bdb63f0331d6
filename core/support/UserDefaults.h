#pragma once

#include "support/Date.h"

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace wakeloft {

/// One stored preference. A boolean is never a number, a date is never a number.
struct DefaultsValue {
    using List = std::vector<DefaultsValue>;

    std::variant<bool, double, std::string, Date, List> value;

    bool operator==(const DefaultsValue&) const = default;
};

/// The user's persistent preferences, typed. Main thread. Reading never fails: what cannot be read is absent.
class UserDefaults {
  public:
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual std::optional<DefaultsValue> value(const std::string& key) const = 0;
    virtual void set(const std::string& key, DefaultsValue value) = 0;
    virtual void remove(const std::string& key) = 0;

    /// The value as a boolean, for whatever is stored: a number counts as true unless it is 0 or NaN; a text
    /// when, after blanks, a sign and zeros, it goes on with Y, y, T, t or a digit from 1 to 9; all else is
    /// false.
    [[nodiscard]] bool boolean(const std::string& key) const;
};

/// Preferences that end with the process, for previews and tests.
class InMemoryUserDefaults final : public UserDefaults {
  public:
    [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override;
    void set(const std::string& key, DefaultsValue value) override;
    void remove(const std::string& key) override;

  private:
    std::map<std::string, DefaultsValue> values_;
};

} // namespace wakeloft
