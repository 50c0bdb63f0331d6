#include "ActionHandler.h"

#include "support/MainThread.h"

#include <utility>

@implementation ActionHandler {
    std::function<void()> _action;
}

- (instancetype)initWithAction:(std::function<void()>)action {
    self = [super init];
    if (self != nil)
        _action = std::move(action);
    return self;
}

- (void)run {
    wakeloft::requireMainThread("the action of a control");
    const auto action = _action; // it may end the handler
    action();
}

@end

namespace wakeloft {

ActionHandler* handlerOf(NSControl* control, std::function<void()> action) {
    ActionHandler* handler = [[ActionHandler alloc] initWithAction:std::move(action)];
    control.target = handler;
    control.action = @selector(run);
    return handler;
}

} // namespace wakeloft
