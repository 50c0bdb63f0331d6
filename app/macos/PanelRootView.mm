#include "PanelRootView.h"

#include "support/MainThread.h"

#include <utility>

@implementation PanelRootView {
    std::function<bool(NSEvent*)> _pressed;
}

- (instancetype)initWithKeyPressed:(std::function<bool(NSEvent*)>)pressed {
    self = [super initWithFrame:NSZeroRect];
    if (self != nil)
        _pressed = std::move(pressed);
    return self;
}

- (BOOL)performKeyEquivalent:(NSEvent*)event {
    wakeloft::requireMainThread("a key of the panel");
    if ([super performKeyEquivalent:event])
        return YES;
    const auto pressed = _pressed; // it may end the view
    return pressed(event);
}

@end
