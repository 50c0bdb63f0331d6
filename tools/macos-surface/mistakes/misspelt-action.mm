// refused by the compiler: undeclared selector 'runs'
#import <AppKit/AppKit.h>
@interface Target : NSObject
- (void)run;
@end
void use(NSControl* control, Target* target) {
    control.target = target;
    control.action = @selector(runs);
}
