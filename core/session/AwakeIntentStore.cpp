#include "session/AwakeIntentStore.h"

namespace wakeloft {

StoredAwakeIntent UserDefaultsAwakeIntentStore::load() const {
    if (!defaults_.boolean(requestedKey))
        return StoredAwakeIntent::intent(AwakeIntent::off());
    const auto stored = defaults_.value(deadlineKey);
    if (!stored)
        return StoredAwakeIntent::intent(AwakeIntent::indefinite());
    const auto* seconds = std::get_if<double>(&stored->value);
    if (seconds == nullptr || !AwakeIntent::isUsable(Date{*seconds}))
        return StoredAwakeIntent::unreadableDeadline();
    return StoredAwakeIntent::intent(AwakeIntent::until(Date{*seconds}));
}

void UserDefaultsAwakeIntentStore::save(const AwakeIntent& intent) {
    if (const auto* until = std::get_if<AwakeIntent::Until>(&intent.value)) {
        defaults_.set(deadlineKey, {until->date.secondsSince1970});
        defaults_.set(requestedKey, {true});
    } else if (std::holds_alternative<AwakeIntent::Indefinite>(intent.value)) {
        defaults_.remove(deadlineKey);
        defaults_.set(requestedKey, {true});
    } else {
        // The deadline stays: it is never looked at while nothing is requested.
        defaults_.remove(requestedKey);
    }
}

namespace {

StoredAwakeIntent stored(bool isAwakeRequested, std::optional<Date> awakeUntil) {
    if (!isAwakeRequested)
        return StoredAwakeIntent::intent(AwakeIntent::off());
    return StoredAwakeIntent::intent(awakeUntil ? AwakeIntent::until(*awakeUntil)
                                                : AwakeIntent::indefinite());
}

} // namespace

InMemoryAwakeIntentStore::InMemoryAwakeIntentStore(bool isAwakeRequested, std::optional<Date> awakeUntil)
    : stored(wakeloft::stored(isAwakeRequested, awakeUntil)) {}

bool InMemoryAwakeIntentStore::isAwakeRequested() const {
    return stored != StoredAwakeIntent::intent(AwakeIntent::off());
}

} // namespace wakeloft
