#include "QuitAppleEvent.h"

#include "support/MainThread.h"

#import <Foundation/Foundation.h>

namespace wakeloft {

std::optional<QuitAppleEvent> QuitAppleEvent::current() {
    requireMainThread("QuitAppleEvent::current");
    constexpr AEKeyword why = 'why?';
    NSAppleEventDescriptor* event = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
    if (event == nil)
        return std::nullopt;
    QuitAppleEvent quit{event.eventClass, event.eventID, std::nullopt};
    // Some requests have their reason as a parameter, some as an attribute.
    NSAppleEventDescriptor* reason =
        [event paramDescriptorForKeyword:why] ?: [event attributeDescriptorForKeyword:why];
    if (reason != nil)
        quit.reason = reason.enumCodeValue;
    return quit;
}

} // namespace wakeloft
