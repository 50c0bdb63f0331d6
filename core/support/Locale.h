#pragma once

#include <string>

namespace wakeloft {

/// A language with its regional formats, named as the platform names it ("en_US", "ar_EG@numbers=latn").
struct Locale {
    std::string identifier = "en";

    bool operator==(const Locale&) const = default;
};

} // namespace wakeloft
