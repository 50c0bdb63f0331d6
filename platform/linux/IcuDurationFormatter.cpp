#include "IcuDurationFormatter.h"

#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>
#include <unicode/unistr.h>

#include <cstdio>
#include <vector>

namespace wakeloft {

namespace {

using Unit = icu::MeasureUnit* (*)(UErrorCode&);

struct Amount {
    std::int64_t count;
    Unit unit;
};

std::string formatted(const std::vector<Amount>& amounts, UMeasureFormatWidth width, const Locale& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::MeasureFormat format(icu::Locale(locale.identifier.c_str()), width, status);
    std::vector<icu::Measure> measures;
    measures.reserve(amounts.size());
    for (const auto& [count, unit] : amounts)
        measures.emplace_back(icu::Formattable(static_cast<int64_t>(count)), unit(status), status);
    icu::FieldPosition nowhere(icu::FieldPosition::DONT_CARE);
    icu::UnicodeString text;
    format.formatMeasures(measures.data(), static_cast<int32_t>(measures.size()), text, nowhere, status);
    std::string utf8;
    if (U_SUCCESS(status))
        return text.toUTF8String(utf8);
    // Without ICU's data a plain form still tells the user the right time.
    std::fprintf(stderr, "Wakeloft: a duration cannot be worded (%s).\n", u_errorName(status));
    for (const auto& amount : amounts)
        utf8.append(utf8.empty() ? "" : ":").append(std::to_string(amount.count));
    return utf8;
}

} // namespace

std::string IcuDurationFormatter::units(HoursAndMinutes duration, Width width, const Locale& locale) const {
    std::vector<Amount> amounts;
    if (duration.hours != 0)
        amounts.push_back({duration.hours, icu::MeasureUnit::createHour});
    if (duration.minutes != 0 || duration.hours == 0)
        amounts.push_back({duration.minutes, icu::MeasureUnit::createMinute});
    return formatted(amounts, width == Width::spoken ? UMEASFMT_WIDTH_WIDE : UMEASFMT_WIDTH_SHORT, locale);
}

std::string IcuDurationFormatter::time(std::int64_t seconds, TimePattern pattern,
                                       const Locale& locale) const {
    std::vector<Amount> amounts;
    const bool showsHours = pattern == TimePattern::hourMinuteSecond;
    if (showsHours)
        amounts.push_back({seconds / 3600, icu::MeasureUnit::createHour});
    amounts.push_back({showsHours ? seconds / 60 % 60 : seconds / 60, icu::MeasureUnit::createMinute});
    amounts.push_back({seconds % 60, icu::MeasureUnit::createSecond});
    return formatted(amounts, UMEASFMT_WIDTH_NUMERIC, locale);
}

} // namespace wakeloft
