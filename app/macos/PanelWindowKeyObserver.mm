#include "PanelWindowKeyObserver.h"

#include "support/MainThread.h"

#include <utility>

@interface WatchingView : NSView
- (instancetype)initWithFrame:(NSRect)frame NS_UNAVAILABLE;
- (instancetype)initWithCoder:(NSCoder*)coder NS_UNAVAILABLE;
- (instancetype)initWithOnBecomeKey:(std::function<void()>)onBecomeKey NS_DESIGNATED_INITIALIZER;
@end

@implementation WatchingView {
    std::function<void()> _onBecomeKey;
    id<NSObject> _observer;
}

- (instancetype)initWithOnBecomeKey:(std::function<void()>)onBecomeKey {
    self = [super initWithFrame:NSZeroRect];
    if (self != nil) {
        _onBecomeKey = std::move(onBecomeKey);
        self.accessibilityElement = NO;
    }
    return self;
}

- (void)dealloc {
    [self stopObserving];
}

- (NSView*)hitTest:(NSPoint)point {
    static_cast<void>(point);
    return nil;
}

- (void)viewDidMoveToWindow {
    [super viewDidMoveToWindow];
    [self stopObserving];
    NSWindow* window = self.window;
    if (window == nil)
        return;
    // No cycle: the centre holds the block, and the block this view weakly.
    __weak WatchingView* weakSelf = self;
    _observer = [NSNotificationCenter.defaultCenter addObserverForName:NSWindowDidBecomeKeyNotification
                                                                object:window
                                                                 queue:NSOperationQueue.mainQueue
                                                            usingBlock:^(NSNotification*) {
                                                                [weakSelf windowDidBecomeKey];
                                                            }];
}

- (void)windowDidBecomeKey {
    wakeloft::requireMainThread("PanelWindowKeyObserver");
    const auto onBecomeKey = _onBecomeKey; // it may end the view
    onBecomeKey();
}

- (void)stopObserving {
    if (_observer != nil)
        [NSNotificationCenter.defaultCenter removeObserver:_observer];
    _observer = nil;
}

@end

namespace wakeloft {

PanelWindowKeyObserver::PanelWindowKeyObserver(std::function<void()> onBecomeKey)
    : view_([[WatchingView alloc] initWithOnBecomeKey:std::move(onBecomeKey)]) {}

NSView* PanelWindowKeyObserver::view() const {
    return view_;
}

} // namespace wakeloft
