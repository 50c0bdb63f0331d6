// refused by the compiler: cannot initialize return object of type 'CFStringRef'
#import <Foundation/Foundation.h>
CFStringRef use(NSString* text) {
    return text;
}
