#include "FoundationUserDefaults.h"

#include "FoundationText.h"
#include "FoundationValue.h"
#include "support/MainThread.h"

namespace wakeloft {

namespace {

NSUserDefaults* defaults() {
    requireMainThread("the user defaults");
    return NSUserDefaults.standardUserDefaults;
}

} // namespace

std::optional<DefaultsValue> FoundationUserDefaults::value(const std::string& key) const {
    id object = [defaults() objectForKey:foundationText(key)];
    return object == nil ? std::nullopt : std::optional(fromFoundation(object));
}

void FoundationUserDefaults::set(const std::string& key, DefaultsValue value) {
    [defaults() setObject:toFoundation(value) forKey:foundationText(key)];
}

void FoundationUserDefaults::remove(const std::string& key) {
    [defaults() removeObjectForKey:foundationText(key)];
}

} // namespace wakeloft
