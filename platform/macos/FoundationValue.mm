#include "FoundationValue.h"

#include "FoundationText.h"

namespace wakeloft {

namespace {

struct ToFoundation {
    id operator()(bool flag) const { return [NSNumber numberWithBool:flag]; }
    id operator()(double number) const { return [NSNumber numberWithDouble:number]; }
    id operator()(const std::string& text) const { return foundationText(text); }
    id operator()(Date date) const { return [NSDate dateWithTimeIntervalSince1970:date.secondsSince1970]; }
    id operator()(const DefaultsValue::List& list) const {
        NSMutableArray* array = [NSMutableArray new];
        for (const auto& each : list)
            [array addObject:toFoundation(each)];
        return array;
    }
};

} // namespace

DefaultsValue fromFoundation(id object) {
    // A boolean is a number too, but one of a type of its own.
    if (CFGetTypeID((__bridge CFTypeRef)object) == CFBooleanGetTypeID())
        return {static_cast<bool>([(NSNumber*)object boolValue])};
    if ([object isKindOfClass:[NSNumber class]])
        return {[(NSNumber*)object doubleValue]};
    if ([object isKindOfClass:[NSString class]])
        return {plainText((NSString*)object)};
    if ([object isKindOfClass:[NSDate class]])
        return {Date{[(NSDate*)object timeIntervalSince1970]}};
    if ([object isKindOfClass:[NSArray class]]) {
        DefaultsValue::List list;
        for (id each in (NSArray*)object)
            list.push_back(fromFoundation(each));
        return {std::move(list)};
    }
    return {std::string()};
}

id toFoundation(const DefaultsValue& value) {
    return std::visit(ToFoundation(), value.value);
}

} // namespace wakeloft
