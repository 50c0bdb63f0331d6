#include "preferences/FeedbackLink.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace wakeloft {

namespace {

constexpr std::string_view path = "/feedback";
constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view digits = "0123456789";

bool isLetterOrDigit(char character) {
    return letters.contains(character) || digits.contains(character);
}

bool isHostLabel(std::string_view label) {
    constexpr std::size_t longest = 63;
    return !label.empty() && label.size() <= longest && label.front() != '-' && label.back() != '-' &&
           std::ranges::all_of(label, [](char each) { return isLetterOrDigit(each) || each == '-'; });
}

bool isHost(std::string_view host) {
    constexpr std::size_t longest = 253;
    if (host.size() > longest)
        return false;
    while (host.contains('.')) {
        if (!isHostLabel(host.substr(0, host.find('.'))))
            return false;
        host.remove_prefix(host.find('.') + 1);
    }
    return isHostLabel(host);
}

/// `text` as the value of a query item.
std::string encoded(std::string_view text) {
    constexpr std::string_view bare = "-._~()";
    std::string result;
    for (const char each : text) {
        if (isLetterOrDigit(each) || bare.contains(each)) {
            result += each;
            continue;
        }
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(each)));
        result += code;
    }
    return result;
}

void appendQueryItem(std::string& address, std::string_view name, const std::optional<std::string>& value) {
    if (!value || value->empty())
        return;
    address += address.contains('?') ? '&' : '?';
    address.append(name).append("=").append(encoded(*value));
}

} // namespace

const std::string& FeedbackLink::form() {
    static const std::string address = formAt(WAKELOFT_FEEDBACK_HOST);
    return address;
}

std::string FeedbackLink::formAt(std::string_view host) {
    if (!isHost(host)) {
        std::fprintf(stderr, "Wakeloft: it was built with “%.*s” as the host of its feedback page.\n",
                     static_cast<int>(host.size()), host.data());
        std::abort();
    }
    return "https://" + std::string(host).append(path);
}

std::string FeedbackLink::macOSVersion(const OperatingSystemVersion& version) {
    auto text = std::to_string(version.major) + "." + std::to_string(version.minor);
    return version.patch == 0 ? text : text + "." + std::to_string(version.patch);
}

std::string FeedbackLink::url(const std::optional<std::string>& appVersion,
                              const std::optional<std::string>& macOSVersion,
                              const std::optional<std::string>& language) {
    std::string address = form();
    if (language && std::ranges::find(languages, *language) != languages.end())
        address.insert(address.size() - path.size(), "/" + *language);
    appendQueryItem(address, "app", appVersion);
    appendQueryItem(address, "macos", macOSVersion);
    return address;
}

} // namespace wakeloft
