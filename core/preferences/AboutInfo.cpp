#include "preferences/AboutInfo.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace wakeloft {

namespace {

std::string textUnder(const char* key, const InfoDictionary& dictionary) {
    const auto found = dictionary.find(key);
    const auto* text = found == dictionary.end() ? nullptr : std::get_if<std::string>(&found->second.value);
    return text == nullptr ? "" : *text;
}

} // namespace

std::optional<AboutInfo> AboutInfo::fromInfoDictionary(const std::optional<InfoDictionary>& dictionary) {
    if (!dictionary)
        return std::nullopt;
    AboutInfo info{textUnder(versionKey, *dictionary), textUnder(buildKey, *dictionary)};
    return info.version.empty() ? std::nullopt : std::optional(std::move(info));
}

std::string AboutInfo::formattedVersion() const {
    return build.empty() || build == version ? version : version + " (" + build + ")";
}

int AboutInfo::copyrightYearOn(Date date, const TimeZone& timeZone) {
    using namespace std::chrono;
    constexpr Seconds farthest = Date::distantFuture().secondsSince1970; // what a calendar can hold, and NaN
    const Seconds local = date.secondsSince1970 + timeZone.secondsFromUtcAt(date);
    const auto seconds = std::isnan(local) ? 0 : std::clamp(std::floor(local), -farthest, farthest);
    const sys_seconds moment{std::chrono::seconds(static_cast<std::int64_t>(seconds))};
    return static_cast<int>(year_month_day(floor<days>(moment)).year());
}

} // namespace wakeloft
