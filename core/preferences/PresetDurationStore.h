#pragma once

#include "support/UserDefaults.h"

#include <optional>
#include <utility>
#include <vector>

namespace wakeloft {

/// Keeps the lengths that the user has starred, in seconds; nothing until stars were changed. Main thread.
class PresetDurationStore {
  public:
    virtual ~PresetDurationStore() = default;
    [[nodiscard]] virtual std::optional<std::vector<Seconds>> pinnedSeconds() const = 0;
    virtual void setPinnedSeconds(const std::optional<std::vector<Seconds>>& seconds) = 0;
};

/// The store of the running app: a list of numbers.
class UserDefaultsPresetDurationStore final : public PresetDurationStore {
  public:
    static constexpr const char* key = "com.wakeloft.presetDurations";

    /// `defaults` must outlive the store.
    explicit UserDefaultsPresetDurationStore(UserDefaults& defaults) : defaults_(defaults) {}

    /// Nothing also where anything but a number is among them.
    [[nodiscard]] std::optional<std::vector<Seconds>> pinnedSeconds() const override;
    void setPinnedSeconds(const std::optional<std::vector<Seconds>>& seconds) override;

  private:
    UserDefaults& defaults_;
};

/// For previews and tests.
class InMemoryPresetDurationStore final : public PresetDurationStore {
  public:
    explicit InMemoryPresetDurationStore(std::optional<std::vector<Seconds>> pinnedSeconds = std::nullopt)
        : pinnedSeconds_(std::move(pinnedSeconds)) {}

    [[nodiscard]] std::optional<std::vector<Seconds>> pinnedSeconds() const override {
        return pinnedSeconds_;
    }
    void setPinnedSeconds(const std::optional<std::vector<Seconds>>& seconds) override {
        pinnedSeconds_ = seconds;
    }

  private:
    std::optional<std::vector<Seconds>> pinnedSeconds_;
};

} // namespace wakeloft
