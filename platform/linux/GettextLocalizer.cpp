#include "GettextLocalizer.h"

#include <libintl.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

namespace wakeloft {

namespace {

constexpr const char* standardDomain = "Wakeloft";
constexpr const char* deepwakeDomain = "Deepwake";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// The environment's locale for messages or formats, as POSIX orders its variables.
std::string environmentLocale(const char* category) {
    for (const char* name : {"LC_ALL", category, "LANG"})
        if (auto value = environment(name); !value.empty())
            return value;
    return "C";
}

bool isPlain(std::string_view locale) {
    return locale == "C" || locale == "POSIX" || locale.starts_with("C.");
}

/// The `Language:` line of the catalogue that serves.
std::string catalogueLanguage() {
    const std::string_view header = dgettext(standardDomain, "");
    constexpr std::string_view field = "Language: ";
    const auto start = header.find(field);
    if (start == std::string_view::npos)
        return "en";
    const auto rest = header.substr(start + field.size());
    return std::string(rest.substr(0, rest.find('\n')));
}

/// The catalogue for "zh_HK" or "zh-Hans-SG", for which gettext looks at none but "zh"; nothing where
/// `language` is not Chinese.
std::optional<std::string> chineseCatalogue(const std::string& language) {
    const auto locale = "_" + AppLanguage::resolvedLocale({language}, Locale{""}).identifier + "_";
    if (!locale.starts_with("_zh_"))
        return std::nullopt;
    const bool isTraditional =
        locale.contains("_Hant_") ||
        (!locale.contains("_Hans_") &&
         (locale.contains("_TW_") || locale.contains("_HK_") || locale.contains("_MO_")));
    return isTraditional ? "zh_TW" : "zh_CN";
}

/// The list as it is in LANGUAGE, with the catalogues that gettext would not find by itself.
std::string withFallbacks(std::string_view languages) {
    std::string list;
    while (!languages.empty()) {
        const auto end = std::min(languages.find(':'), languages.size());
        const std::string language(languages.substr(0, end));
        list.append(language).append(":");
        if (const auto catalogue = chineseCatalogue(language))
            list.append(*catalogue).append(":");
        languages.remove_prefix(std::min(end + 1, languages.size()));
    }
    return list;
}

} // namespace

GettextLocalizer::GettextLocalizer(const std::filesystem::path& catalogues) {
    // A list of its own: the user's languages, then this edition's English wording.
    auto languages = environment("LANGUAGE");
    const auto messages = environmentLocale("LC_MESSAGES");
    if (languages.empty() && !isPlain(messages))
        languages = messages.substr(0, messages.find('.'));
    setenv("LANGUAGE", (withFallbacks(languages) + "en").c_str(), 1);
    // Catalogues are off in the "C" locale, and setlocale refuses one that the system has not generated.
    const char* set = std::setlocale(LC_MESSAGES, "");
    if ((set == nullptr || isPlain(set)) && std::setlocale(LC_MESSAGES, "C.UTF-8") == nullptr)
        std::fputs("Wakeloft: the system has no C.UTF-8 locale, so texts stay untranslated.\n", stderr);
    for (const char* domain : {standardDomain, deepwakeDomain}) {
        bindtextdomain(domain, catalogues.c_str());
        bind_textdomain_codeset(domain, "UTF-8");
    }
    language_ = AppLanguage::preferring({languageIdentifier(catalogueLanguage())},
                                        Locale{environmentLocale("LC_TIME")});
}

std::string GettextLocalizer::text(Table table, const char* key) const {
    return dgettext(table == Table::deepwake ? deepwakeDomain : standardDomain, key);
}

bool GettextLocalizer::isRightToLeft() const {
    return language_.layoutDirection == LayoutDirection::rightToLeft;
}

std::string languageIdentifier(const std::string& catalogueLanguage) {
    // Catalogues tell the two ways to write Chinese by where they are in use.
    for (const char* traditional : {"zh_TW", "zh_HK", "zh_MO"})
        if (catalogueLanguage == traditional)
            return "zh-Hant";
    if (catalogueLanguage == "zh_CN" || catalogueLanguage == "zh_SG")
        return "zh-Hans";
    auto identifier = catalogueLanguage;
    std::ranges::replace(identifier, '_', '-');
    return identifier;
}

std::filesystem::path catalogueFolder() {
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    for (auto folder = executable.parent_path(); folder.has_relative_path(); folder = folder.parent_path())
        if (auto catalogues = folder / "share/locale";
            std::filesystem::exists(catalogues / "en/LC_MESSAGES/Wakeloft.mo", error))
            return catalogues;
    std::fputs("Wakeloft: its translations are not installed, so its texts stay in their raw English.\n",
               stderr);
    return {};
}

} // namespace wakeloft
