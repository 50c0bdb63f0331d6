#pragma once

#include "support/UserDefaults.h"

#include <expected>
#include <map>
#include <string>

namespace wakeloft {

/// The text of the settings file. Numbers that JSON has no form for, and dates, are written as tagged
/// objects.
std::string jsonFromSettings(const std::map<std::string, DefaultsValue>& values);

/// The values of a settings file, or in a few words why it cannot be understood ("a newer version wrote it").
std::expected<std::map<std::string, DefaultsValue>, std::string> settingsFromJson(const std::string& text);

} // namespace wakeloft
