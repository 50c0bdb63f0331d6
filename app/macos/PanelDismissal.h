// For the views.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Notices that the user turns to something else than the open panel: a press outside of the app, another app
/// in front, or another of the app's windows with the keyboard.
class PanelDismissal {
  public:
    struct Events {
        /// The window belongs to the panel, or to what it hangs from.
        std::function<bool(NSWindow* _Nullable)> isPartOfPanel;
        std::function<void()> dismissed;
    };
    explicit PanelDismissal(Events events);
    PanelDismissal(const PanelDismissal&) = delete;
    PanelDismissal& operator=(const PanelDismissal&) = delete;
    ~PanelDismissal();

    void start();
    void stop();

  private:
    Events events_;
    id _Nullable pressMonitor_ = nil;
    id<NSObject> _Nullable keyToken_ = nil;
    id<NSObject> _Nullable resignToken_ = nil;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
