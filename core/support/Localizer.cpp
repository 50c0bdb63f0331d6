#include "support/Localizer.h"

namespace wakeloft {

std::string filled(std::string text, std::string_view placeholder, std::string_view value) {
    if (const auto at = text.find(placeholder); at != std::string::npos)
        text.replace(at, placeholder.size(), value);
    return text;
}

std::string isolatedLeftToRight(const std::string& text) {
    return "\u2066" + text + "\u2069";
}

} // namespace wakeloft
