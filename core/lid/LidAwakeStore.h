#pragma once

#include "support/UserDefaults.h"

namespace wakeloft {

/// Remembers that the user has acknowledged the heat warning. Main thread.
class LidAwakeStore {
  public:
    virtual ~LidAwakeStore() = default;
    [[nodiscard]] virtual bool hasAcknowledgedHeatWarning() const = 0;
    virtual void setHasAcknowledgedHeatWarning(bool hasAcknowledged) = 0;
};

/// The store of the running app.
class UserDefaultsLidAwakeStore final : public LidAwakeStore {
  public:
    static constexpr const char* key = "com.wakeloft.acknowledgedHeatWarning";

    /// `defaults` must outlive the store.
    explicit UserDefaultsLidAwakeStore(UserDefaults& defaults) : defaults_(defaults) {}

    [[nodiscard]] bool hasAcknowledgedHeatWarning() const override;
    void setHasAcknowledgedHeatWarning(bool hasAcknowledged) override;

  private:
    UserDefaults& defaults_;
};

/// For previews and tests.
class InMemoryLidAwakeStore final : public LidAwakeStore {
  public:
    explicit InMemoryLidAwakeStore(bool hasAcknowledged = false) : hasAcknowledged_(hasAcknowledged) {}

    [[nodiscard]] bool hasAcknowledgedHeatWarning() const override { return hasAcknowledged_; }
    void setHasAcknowledgedHeatWarning(bool hasAcknowledged) override { hasAcknowledged_ = hasAcknowledged; }

  private:
    bool hasAcknowledged_;
};

} // namespace wakeloft
