#include "support/AppLanguage.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace wakeloft {

namespace {

struct LanguageTag {
    std::string language;
    std::string script;
    std::string region;
};

bool isAll(std::string_view text, std::string_view characters) {
    return text.find_first_not_of(characters) == std::string_view::npos;
}

bool isLetters(std::string_view text) {
    return isAll(text, "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
}

std::string lowered(std::string_view text) {
    std::string result(text);
    for (auto& each : result)
        if (each >= 'A' && each <= 'Z')
            each = static_cast<char>(each - 'A' + 'a');
    return result;
}

std::string raised(std::string_view text) {
    std::string result(text);
    for (auto& each : result)
        if (each >= 'a' && each <= 'z')
            each = static_cast<char>(each - 'a' + 'A');
    return result;
}

LanguageTag parsed(std::string_view identifier) {
    identifier = identifier.substr(0, identifier.find_first_of(".@"));
    LanguageTag tag;
    bool isFirst = true;
    while (!identifier.empty()) {
        const auto end = std::min(identifier.find_first_of("-_"), identifier.size());
        const auto part = identifier.substr(0, end);
        identifier.remove_prefix(std::min(end + 1, identifier.size()));
        if (isFirst)
            tag.language = lowered(part);
        else if (part.size() == 4 && isLetters(part) && tag.region.empty())
            tag.script = raised(part.substr(0, 1)) + lowered(part.substr(1));
        else if (tag.region.empty() &&
                 ((part.size() == 2 && isLetters(part)) || (part.size() == 3 && isAll(part, "0123456789"))))
            tag.region = raised(part);
        isFirst = false;
    }
    return tag;
}

/// "@calendar=buddhist;numbers=latn", or nothing. What has no "=" is no keyword but a variant ("@euro").
std::string_view keywords(std::string_view identifier) {
    const auto start = identifier.find('@');
    if (start == std::string_view::npos || !identifier.substr(start).contains('='))
        return {};
    return identifier.substr(start);
}

bool isRightToLeft(const LanguageTag& tag) {
    constexpr std::array<std::string_view, 10> scripts = {"Adlm", "Arab", "Hebr", "Mand", "Nkoo",
                                                          "Rohg", "Samr", "Syrc", "Thaa", "Yezi"};
    constexpr std::array<std::string_view, 16> languages = {
        "ar", "arc", "ckb", "dv", "fa", "he", "iw", "ks", "nqo", "ps", "sd", "syr", "ug", "ur", "yi", "ji"};
    if (!tag.script.empty())
        return std::ranges::find(scripts, tag.script) != scripts.end();
    return std::ranges::find(languages, tag.language) != languages.end();
}

} // namespace

AppLanguage AppLanguage::preferring(const std::vector<std::string>& preferred, const Locale& base) {
    return {preferred.empty() ? "en" : preferred.front(), direction(preferred),
            resolvedLocale(preferred, base)};
}

LayoutDirection AppLanguage::direction(const std::vector<std::string>& preferred) {
    const bool isMirrored = !preferred.empty() && isRightToLeft(parsed(preferred.front()));
    return isMirrored ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
}

Locale AppLanguage::resolvedLocale(const std::vector<std::string>& preferred, const Locale& base) {
    if (preferred.empty())
        return base;
    auto tag = parsed(preferred.front());
    if (tag.region.empty())
        tag.region = parsed(base.identifier).region;
    Locale locale{tag.language};
    for (const auto& part : {tag.script, tag.region})
        if (!part.empty())
            locale.identifier += "_" + part;
    locale.identifier += keywords(base.identifier);
    return locale;
}

} // namespace wakeloft
