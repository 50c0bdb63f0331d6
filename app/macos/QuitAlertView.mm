#include "QuitAlertView.h"

#include "FoundationText.h"
#include "Layout.h"
#include "support/MainThread.h"

namespace wakeloft {

namespace {

void addButton(NSAlert* alert, const QuitAlertContent::Button& content) {
    NSButton* button = [alert addButtonWithTitle:foundationText(content.title)];
    button.keyEquivalent = foundationText(content.keyEquivalent);
}

} // namespace

bool askToQuit(const QuitAlertContent& content) {
    requireMainThread("askToQuit");
    NSAlert* alert = [NSAlert new];
    alert.alertStyle = NSAlertStyleInformational;
    alert.messageText = foundationText(content.title);
    alert.informativeText = foundationText(content.message);
    addButton(alert, content.confirm);
    addButton(alert, content.cancel);
    [alert layout]; // so that all of its views are there, as an alert itself has no direction
    if (NSView* views = alert.window.contentView)
        setDirection(views, content.isRightToLeft);
    [NSApplication.sharedApplication activate];
    return [alert runModal] == NSAlertFirstButtonReturn;
}

} // namespace wakeloft
