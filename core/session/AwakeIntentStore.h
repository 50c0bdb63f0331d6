#pragma once

#include "session/AwakeIntent.h"
#include "support/UserDefaults.h"

namespace wakeloft {

/// Carries the user's request across launches. Main thread.
class AwakeIntentStore {
  public:
    virtual ~AwakeIntentStore() = default;
    [[nodiscard]] virtual StoredAwakeIntent load() const = 0;
    virtual void save(const AwakeIntent& intent) = 0;
};

/// The store of the running app, on two keys of the user defaults.
class UserDefaultsAwakeIntentStore final : public AwakeIntentStore {
  public:
    static constexpr const char* requestedKey = "com.wakeloft.isAwakeRequested";
    static constexpr const char* deadlineKey = "com.wakeloft.awakeUntil"; ///< seconds since 1970

    /// `defaults` must outlive the store.
    explicit UserDefaultsAwakeIntentStore(UserDefaults& defaults) : defaults_(defaults) {}

    [[nodiscard]] StoredAwakeIntent load() const override;
    void save(const AwakeIntent& intent) override;

  private:
    UserDefaults& defaults_;
};

/// For previews and tests.
class InMemoryAwakeIntentStore final : public AwakeIntentStore {
  public:
    explicit InMemoryAwakeIntentStore(StoredAwakeIntent initial) : stored(initial) {}
    InMemoryAwakeIntentStore(bool isAwakeRequested, std::optional<Date> awakeUntil);

    [[nodiscard]] StoredAwakeIntent load() const override { return stored; }
    void save(const AwakeIntent& intent) override { stored = StoredAwakeIntent::intent(intent); }

    /// An unreadable deadline counts as requested.
    [[nodiscard]] bool isAwakeRequested() const;
    [[nodiscard]] std::optional<Date> awakeUntil() const { return stored.deadline(); }

    StoredAwakeIntent stored;
};

} // namespace wakeloft
