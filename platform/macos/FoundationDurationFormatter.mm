#include "FoundationDurationFormatter.h"

#include "FoundationText.h"

namespace wakeloft {

namespace {

NSLocale* foundationLocale(const Locale& locale) {
    return [NSLocale localeWithLocaleIdentifier:foundationText(locale.identifier)];
}

// Shows exactly the units that it is given: what is dropped is decided before. In a calendar without summer
// time, so that an hour is an hour.
NSDateComponentsFormatter* formatter(NSCalendarUnit units, const Locale& locale) {
    NSCalendar* calendar = [NSCalendar calendarWithIdentifier:NSCalendarIdentifierGregorian];
    calendar.locale = foundationLocale(locale);
    calendar.timeZone = [NSTimeZone timeZoneForSecondsFromGMT:0];
    NSDateComponentsFormatter* formatter = [NSDateComponentsFormatter new];
    formatter.calendar = calendar;
    formatter.allowedUnits = units;
    formatter.zeroFormattingBehavior = NSDateComponentsFormatterZeroFormattingBehaviorNone;
    return formatter;
}

std::string formatted(NSDateComponentsFormatter* formatter, std::int64_t seconds) {
    NSString* text = [formatter stringFromTimeInterval:static_cast<double>(seconds)];
    return text == nil ? std::to_string(seconds) + " s" : plainText(text);
}

/// "4:07" of "04:07".
NSString* withoutLeadingZero(NSString* text, const Locale& locale) {
    NSNumberFormatter* numbers = [NSNumberFormatter new];
    numbers.locale = foundationLocale(locale);
    NSString* zero = [numbers stringFromNumber:[NSNumber numberWithInt:0]];
    if (zero == nil || ![text hasPrefix:zero] || text.length == zero.length)
        return text;
    const unichar next = [text characterAtIndex:zero.length];
    return [NSCharacterSet.decimalDigitCharacterSet characterIsMember:next]
               ? [text substringFromIndex:zero.length]
               : text;
}

} // namespace

std::string FoundationDurationFormatter::units(HoursAndMinutes duration, Width width,
                                               const Locale& locale) const {
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t hour = 60 * minute;
    NSCalendarUnit shown = 0;
    if (duration.hours != 0)
        shown |= NSCalendarUnitHour;
    if (duration.minutes != 0 || duration.hours == 0)
        shown |= NSCalendarUnitMinute;
    NSDateComponentsFormatter* words = formatter(shown, locale);
    // "1 hr, 30 min"; the style that is called abbreviated would say "1h 30m".
    words.unitsStyle = width == Width::spoken ? NSDateComponentsFormatterUnitsStyleFull
                                              : NSDateComponentsFormatterUnitsStyleShort;
    return formatted(words, duration.hours * hour + duration.minutes * minute);
}

std::string FoundationDurationFormatter::time(std::int64_t seconds, TimePattern pattern,
                                              const Locale& locale) const {
    NSCalendarUnit shown = NSCalendarUnitMinute | NSCalendarUnitSecond;
    if (pattern == TimePattern::hourMinuteSecond)
        shown |= NSCalendarUnitHour;
    NSDateComponentsFormatter* clock = formatter(shown, locale);
    clock.unitsStyle = NSDateComponentsFormatterUnitsStylePositional;
    clock.zeroFormattingBehavior = NSDateComponentsFormatterZeroFormattingBehaviorPad;
    NSString* text = [clock stringFromTimeInterval:static_cast<double>(seconds)];
    if (text == nil)
        return formatted(clock, seconds);
    return plainText(withoutLeadingZero(text, locale));
}

} // namespace wakeloft
