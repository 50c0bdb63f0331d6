// For the panel's own views.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

namespace wakeloft {

/// An invisible view in the panel's background that tells when the window around it becomes the key window:
/// the user has opened the panel, or come back to it. Takes no clicks and says nothing to VoiceOver.
class PanelWindowKeyObserver {
  public:
    explicit PanelWindowKeyObserver(std::function<void()> onBecomeKey);

    /// To be put below the other views.
    [[nodiscard]] NSView* _Nonnull view() const;

  private:
    NSView* _Nonnull view_;
};

} // namespace wakeloft
