#include "Popover.h"

#include "support/MainThread.h"

#include <utility>

/// A popover asks its delegate only for what it finds there; so that a slip of the pen is found, too.
@protocol PopoverEnding <NSPopoverDelegate>
@required
- (void)popoverWillClose:(NSNotification*)notification;
@end

@interface PopoverEnd : NSObject <PopoverEnding>
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithCloses:(std::function<void()>)closes NS_DESIGNATED_INITIALIZER;
@end

@implementation PopoverEnd {
    std::function<void()> _closes;
}

- (instancetype)initWithCloses:(std::function<void()>)closes {
    self = [super init];
    if (self != nil)
        _closes = std::move(closes);
    return self;
}

- (void)popoverWillClose:(NSNotification*)notification {
    static_cast<void>(notification);
    wakeloft::requireMainThread("a popover's end");
    const auto closes = _closes; // it may end the popover
    closes();
}

@end

namespace wakeloft {

namespace {

NSViewController* controllerOf(NSView* view) {
    NSViewController* controller = [[NSViewController alloc] initWithNibName:nil bundle:nil];
    controller.view = view;
    return controller;
}

bool mayMove() {
    return !NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

} // namespace

Popover::Popover(NSView* content, NSPopoverBehavior behavior, std::function<void()> closes)
    : content_(content),
      popover_([NSPopover new]),
      end_([[PopoverEnd alloc] initWithCloses:std::move(closes)]) {
    popover_.behavior = behavior;
    popover_.contentViewController = controllerOf(content_);
    popover_.delegate = end_;
}

Popover::~Popover() {
    popover_.delegate = nil;
    close();
}

void Popover::showBelow(NSView* anchor) {
    fit();
    popover_.animates = mayMove();
    [popover_ showRelativeToRect:anchor.bounds ofView:anchor preferredEdge:NSRectEdgeMinY];
}

void Popover::fit() {
    popover_.animates = mayMove();
    popover_.contentSize = content_.fittingSize;
}

void Popover::close() {
    [popover_ close];
}

NSWindow* Popover::window() const {
    return content_.window;
}

} // namespace wakeloft
