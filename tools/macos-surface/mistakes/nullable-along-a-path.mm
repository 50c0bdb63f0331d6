// refused by the linter: Nullable pointer is passed to a callee that requires a non-null
#import <Foundation/Foundation.h>
NSLocale* use(NSNumberFormatter* numbers) {
    NSString* zero = [numbers stringFromNumber:[NSNumber numberWithInt:0]];
    return [NSLocale localeWithLocaleIdentifier:zero];
}
