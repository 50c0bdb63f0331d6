// Locales, calendars and the formatters on them.
#pragma once
#include <Foundation/NSCollections.h>
NS_ASSUME_NONNULL_BEGIN
@interface NSLocale : NSObject <NSCopying>
@property (class, readonly, copy) NSLocale *currentLocale;
@property (readonly, copy) NSString *localeIdentifier;
+ (instancetype)localeWithLocaleIdentifier:(NSString *)identifier;
@end

@interface NSBundle : NSObject
@property (class, readonly, strong) NSBundle *mainBundle;
@property (readonly, copy) NSArray<NSString *> *preferredLocalizations;
@property (nullable, readonly, copy) NSDictionary<NSString *, id> *infoDictionary;
@property (readonly, copy) NSURL *bundleURL SURFACE_SINCE(10.6);
- (NSString *)localizedStringForKey:(NSString *)key
                              value:(nullable NSString *)value
                              table:(nullable NSString *)table;
@end

typedef NSString *NSCalendarIdentifier;
SURFACE_EXTERN NSCalendarIdentifier const NSCalendarIdentifierGregorian;
typedef NS_OPTIONS(NSUInteger, NSCalendarUnit) {
    NSCalendarUnitHour = 1 << 5,
    NSCalendarUnitMinute = 1 << 6,
    NSCalendarUnitSecond = 1 << 7
};
@interface NSTimeZone : NSObject
@property (class, readonly, copy) NSTimeZone *systemTimeZone;
+ (void)resetSystemTimeZone;
- (NSInteger)secondsFromGMTForDate:(NSDate *)date;
+ (instancetype)timeZoneForSecondsFromGMT:(NSInteger)seconds;
@end
@interface NSCalendar : NSObject <NSCopying>
@property (nullable, copy) NSLocale *locale;
@property (copy) NSTimeZone *timeZone;
+ (nullable NSCalendar *)calendarWithIdentifier:(NSCalendarIdentifier)identifier;
@end

@interface NSFormatter : NSObject
@end
typedef NS_ENUM(NSInteger, NSDateComponentsFormatterUnitsStyle) {
    NSDateComponentsFormatterUnitsStylePositional = 0,
    NSDateComponentsFormatterUnitsStyleAbbreviated = 1,
    NSDateComponentsFormatterUnitsStyleShort = 2,
    NSDateComponentsFormatterUnitsStyleFull = 3
};
typedef NS_OPTIONS(NSUInteger, NSDateComponentsFormatterZeroFormattingBehavior) {
    NSDateComponentsFormatterZeroFormattingBehaviorNone = 0,
    NSDateComponentsFormatterZeroFormattingBehaviorPad = 1 << 16
};
@interface NSDateComponentsFormatter : NSFormatter
@property NSDateComponentsFormatterUnitsStyle unitsStyle;
@property NSCalendarUnit allowedUnits;
@property NSDateComponentsFormatterZeroFormattingBehavior zeroFormattingBehavior;
@property (nullable, copy) NSCalendar *calendar;
- (nullable NSString *)stringFromTimeInterval:(NSTimeInterval)seconds;
@end
@interface NSNumberFormatter : NSFormatter
@property (null_resettable, copy) NSLocale *locale;
- (nullable NSString *)stringFromNumber:(NSNumber *)number;
@end
@interface NSCharacterSet : NSObject
@property (class, readonly, copy) NSCharacterSet *decimalDigitCharacterSet;
- (BOOL)characterIsMember:(unichar)character;
@end
NS_ASSUME_NONNULL_END
