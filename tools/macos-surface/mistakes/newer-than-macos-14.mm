// refused by the compiler: 'newerThing' is only available on macOS 15.0 or newer
#import <Foundation/Foundation.h>
@interface NSTimer (Newer)
- (void)newerThing SURFACE_SINCE(15.0);
@end
void use(NSTimer* timer) {
    [timer newerThing];
}
