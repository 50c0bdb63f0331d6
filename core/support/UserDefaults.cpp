#include "support/UserDefaults.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

bool readsAsTrue(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n"), text.size()));
    if (text.starts_with('+') || text.starts_with('-'))
        text.remove_prefix(1);
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return !text.empty() && std::string_view("YyTt123456789").contains(text.front());
}

} // namespace

bool UserDefaults::boolean(const std::string& key) const {
    const auto stored = value(key);
    if (!stored)
        return false;
    if (const auto* flag = std::get_if<bool>(&stored->value))
        return *flag;
    if (const auto* number = std::get_if<double>(&stored->value))
        return *number != 0 && !std::isnan(*number);
    if (const auto* text = std::get_if<std::string>(&stored->value))
        return readsAsTrue(*text);
    return false;
}

std::optional<DefaultsValue> InMemoryUserDefaults::value(const std::string& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void InMemoryUserDefaults::set(const std::string& key, DefaultsValue value) {
    values_.insert_or_assign(key, std::move(value));
}

void InMemoryUserDefaults::remove(const std::string& key) {
    values_.erase(key);
}

} // namespace wakeloft
