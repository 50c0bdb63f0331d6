#pragma once

#include "session/DurationFormatter.h"
#include "support/Localizer.h"

#include <string>

namespace wakeloft {

/// Words durations in minutes and names the locale that was asked for.
struct ManualFormatter final : DurationFormatter {
    [[nodiscard]] std::string units(HoursAndMinutes duration, Width width,
                                    const Locale& locale) const override {
        const auto total = std::to_string(duration.hours * 60 + duration.minutes);
        return total + (width == Width::spoken ? " minutes" : " min") + "/" + locale.identifier;
    }
    [[nodiscard]] std::string time(std::int64_t seconds, TimePattern, const Locale&) const override {
        return std::to_string(seconds) + " s";
    }
};

/// Answers with the key, marked where it was looked up in Deepwake's table.
struct ManualLocalizer final : Localizer {
    bool isArabic = false;

    using Localizer::text;
    [[nodiscard]] std::string text(Table table, const char* key) const override {
        return (table == Table::deepwake ? "[D] " : "") + std::string(key);
    }
    [[nodiscard]] bool isRightToLeft() const override { return isArabic; }
};

} // namespace wakeloft
