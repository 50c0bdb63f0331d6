// refused by the compiler: designated initializer of the superclass '-initWithFrame:' not found
#import <AppKit/AppKit.h>
@interface Panel : NSView
- (instancetype)initWithTitle:(NSString*)title NS_DESIGNATED_INITIALIZER;
@end
@implementation Panel
- (instancetype)initWithTitle:(NSString*)title {
    self = [super initWithFrame:NSZeroRect];
    self.accessibilityLabel = title;
    return self;
}
@end
