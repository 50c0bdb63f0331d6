#pragma once

#include "preferences/LoginItem.h"
#include "session/AwakeFailure.h"
#include "support/Observable.h"

#include <optional>

namespace wakeloft {

/// The switch that opens the app at login. The system knows how it stands: after every change its state is
/// read again. Main thread; the calls to the system are made from there.
class LoginItemController {
  public:
    /// `repairingRegistration` registers again what is enabled, so that it points at this copy of the app,
    /// also after the app was moved or updated. `item` must outlive the controller.
    LoginItemController(LoginItem& item, bool repairingRegistration);
    LoginItemController(const LoginItemController&) = delete;
    LoginItemController& operator=(const LoginItemController&) = delete;
    ~LoginItemController() = default;

    /// Reads the system's state again, which the user may have changed meanwhile.
    void refresh();
    void setEnabled(bool on);
    /// Switches on what is disabled, and off everything else.
    void toggle();

    /// Signals once after an operation that changed any field below, the location apart.
    Signal& changed() { return changed_; }

    [[nodiscard]] LoginItemState state() const { return state_.get(); }
    [[nodiscard]] bool isEnabled() const { return state() == LoginItemState::enabled; }
    [[nodiscard]] bool isRegistered() const { return state() != LoginItemState::disabled; }
    [[nodiscard]] bool needsApproval() const { return state() == LoginItemState::requiresApproval; }
    /// Why the last change failed.
    [[nodiscard]] const std::optional<AwakeFailure>& lastFailure() const { return lastFailure_.get(); }
    [[nodiscard]] bool isAtStableLocation() const { return item_.isAtStableLocation(); }

  private:
    void keep(const std::expected<void, Error>& outcome);

    LoginItem& item_;
    Signal changed_;
    Observable<LoginItemState> state_;
    Observable<std::optional<AwakeFailure>> lastFailure_{changed_};
};

} // namespace wakeloft
