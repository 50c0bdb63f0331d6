#include "preferences/LoginItemController.h"

namespace wakeloft {

LoginItemController::LoginItemController(LoginItem& item, bool repairingRegistration)
    : item_(item), state_(changed_, item.state()) {
    if (repairingRegistration && isEnabled() && isAtStableLocation())
        keep(item_.registerItem());
}

void LoginItemController::refresh() {
    const Signal::Batch batch(changed_);
    const auto before = state();
    state_.set(item_.state());
    if (state() != before)
        lastFailure_.set(std::nullopt); // it was about another state
}

void LoginItemController::setEnabled(bool on) {
    const Signal::Batch batch(changed_);
    keep(on ? item_.registerItem() : item_.unregisterItem());
}

void LoginItemController::toggle() {
    setEnabled(!isRegistered());
}

void LoginItemController::keep(const std::expected<void, Error>& outcome) {
    lastFailure_.set(outcome ? std::nullopt : std::optional(AwakeFailure(outcome.error())));
    state_.set(item_.state());
}

} // namespace wakeloft
