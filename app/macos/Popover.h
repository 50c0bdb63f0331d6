// For the views.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

NS_ASSUME_NONNULL_BEGIN

@class PopoverEnd;

namespace wakeloft {

/// A popover with views of ours in it, as large as they are. Moves only for those who like it.
class Popover {
  public:
    /// `closes` is told when it closes for whatever reason but this object's end.
    Popover(NSView* content, NSPopoverBehavior behavior, std::function<void()> closes);
    Popover(const Popover&) = delete;
    Popover& operator=(const Popover&) = delete;
    ~Popover();

    /// Below `anchor`, which is in a window, or where there is room.
    void showBelow(NSView* anchor);
    /// Takes on the size of what is in it.
    void fit();
    void close();
    /// Nil before it is first shown.
    [[nodiscard]] NSWindow* _Nullable window() const;

  private:
    NSView* content_;
    NSPopover* popover_;
    PopoverEnd* end_; ///< which the popover holds weakly
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
