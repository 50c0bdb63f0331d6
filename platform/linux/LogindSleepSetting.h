#pragma once

#include "BusConnection.h"
#include "BusDeadline.h"
#include "ListedInhibitor.h"
#include "lease/SystemSleepSetting.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// The sleep setting as the login manager keeps it: "disabled" is one block inhibitor on both `sleep` and
/// `handle-lid-switch`. It is a descriptor, which the kernel closes with the process, so that nothing
/// outlives a crash. Made for uid 0, whom the login manager does not ask for a password. Each operation waits
/// for the answers of a few calls, within its limit as a whole. Main thread.
class LogindSleepSetting final : public SystemSleepSetting {
  public:
    /// `systemBus` must outlive the setting.
    LogindSleepSetting(BusConnection& systemBus, std::string who, std::string why);
    LogindSleepSetting(const LogindSleepSetting&) = delete;
    LogindSleepSetting& operator=(const LogindSleepSetting&) = delete;
    ~LogindSleepSetting() override;

    /// On: refuses beside somebody else's lock. Both read back what the login manager lists afterwards.
    std::expected<void, PlatformError> writeDisabled(bool disabled) override;
    /// While the own lock is held: whether it is still listed; if not, it is given up. Otherwise: whether
    /// somebody else keeps the computer from sleeping with the lid closed.
    std::expected<bool, PlatformError> readDisabled() override;

    /// Lets the lock go, which then reads as turned off elsewhere, and takes none until `permit()`.
    void forbid(std::string reason);
    void permit() { forbiddenFor_.reset(); }

    [[nodiscard]] bool isHeld() const { return descriptor_ >= 0; }
    /// `released` is told each time the lock was let go from here, but not when it was lost.
    void observeRelease(std::function<void()> released) { released_ = std::move(released); }
    /// `changed` is told when a held lock may have been lost.
    std::expected<void, PlatformError> watch(std::function<void()> changed);

  private:
    using Deadline = BusDeadline;

    std::expected<void, PlatformError> take(const Deadline& deadline);
    std::expected<void, PlatformError> awaitGone(const Deadline& deadline);
    std::expected<std::optional<std::string>, PlatformError> heldElsewhere(const Deadline& deadline);
    std::expected<std::vector<ListedInhibitor>, PlatformError> lidLocks(const Deadline& deadline);
    std::expected<bool, PlatformError> isSuspendMasked(const Deadline& deadline);
    [[nodiscard]] bool isOtherEndHeld() const;
    void closeDescriptor();

    BusConnection& systemBus_;
    std::string who_;
    std::string why_;
    std::function<void()> released_;
    std::optional<std::string> forbiddenFor_;
    bool isOn_ = false;          ///< what was written last, or adopted
    bool isReleaseOpen_ = false; ///< let go, but not yet seen to be gone
    bool isListed_ = false;      ///< the lock was seen on the list, and no change was told since
    int descriptor_ = -1;
    BusSlot propertiesWatch_;
    BusSlot ownerWatch_;
};

} // namespace wakeloft
