#include "lease/RigLeaseFile.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <locale>
#include <sstream>
#include <string_view>

namespace wakeloft {

std::string RigLeaseFile::encode(Date date) {
    char buffer[512]; // the longest fixed form of a double has 309 digits before its point
    const auto [end, error] =
        std::to_chars(std::begin(buffer), std::end(buffer), date.secondsSince1970, std::chars_format::fixed);
    std::string text(buffer, error == std::errc() ? end : buffer);
    if (text.find('.') == std::string::npos)
        text += ".0";
    return text;
}

std::optional<Date> RigLeaseFile::decode(std::string text) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return std::nullopt;
    text = text.substr(first, text.find_last_not_of(blanks) - first + 1);
    // Not by std::from_chars: the C++ library of macOS 14 has none for a double.
    std::istringstream number(text);
    number.imbue(std::locale::classic());
    double seconds = 0;
    const bool isWhole = (number >> seconds) && number.peek() == std::istringstream::traits_type::eof();
    if (!isWhole || !std::isfinite(seconds))
        return std::nullopt;
    return Date{seconds};
}

std::optional<Date> RigLeaseFile::readAt(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::stringstream text;
    text << file.rdbuf();
    return file.bad() ? std::nullopt : decode(text.str());
}

} // namespace wakeloft
