#include "preferences/LoginItem.h"

namespace wakeloft {

std::expected<void, Error> InMemoryLoginItem::registerItem() {
    current = LoginItemState::enabled;
    return {};
}

std::expected<void, Error> InMemoryLoginItem::unregisterItem() {
    current = LoginItemState::disabled;
    return {};
}

} // namespace wakeloft
