// For the views.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

NS_ASSUME_NONNULL_BEGIN

/// What a control or a menu's item calls when it is chosen. They hold their target weakly: whoever made it
/// keeps it.
@interface ActionHandler : NSObject
- (instancetype)init NS_UNAVAILABLE;
- (instancetype)initWithAction:(std::function<void()>)action NS_DESIGNATED_INITIALIZER;
- (void)run;
@end

namespace wakeloft {

/// Has `control` run `action` for as long as the handler lives.
[[nodiscard]] ActionHandler* handlerOf(NSControl* control, std::function<void()> action);

} // namespace wakeloft

NS_ASSUME_NONNULL_END
