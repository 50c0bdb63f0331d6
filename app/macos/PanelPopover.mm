#include "PanelPopover.h"

#include "FoundationText.h"
#include "Layout.h"
#include "PanelRootView.h"
#include "PanelWindowKeyObserver.h"
#include "QuitConfirmationAlert.h"
#include "support/MainThread.h"

#include <utility>

namespace wakeloft {

PanelPopover::PanelPopover(AwakePanel& panel, const SettingsSource& settings,
                           std::function<void(bool isOpen)> shown)
    : panel_(panel),
      source_(settings),
      shown_(std::move(shown)),
      body_([this](const PanelAction& action) { panel_.perform(action); }, [this] { settings_.openMenu(); }),
      settings_(settings, body_.settingsButton()),
      dismissal_({.isPartOfPanel = [this](NSWindow* window) { return isPartOfPanel(window); },
                  .dismissed = [this] { close(); }}),
      settingsChanged_(settings.menu.changed().subscribe([this] { refresh(); })) {
    // No cycle in any of the handlers: they do not keep this object, and do nothing once it has ended.
    const auto pressed =
        lifetime_.guard([this](NSEvent* event, bool& isDone) { isDone = keyPressed(event); });
    PanelRootView* root = [[PanelRootView alloc] initWithKeyPressed:[pressed](NSEvent* event) {
        bool isDone = false;
        pressed(event, isDone);
        return isDone;
    }];
    const PanelWindowKeyObserver observer(lifetime_.guard([this] {
        panel_.opened();
        refresh();
    }));
    fill(root, observer.view(), NSEdgeInsetsMake(0, 0, 0, 0));
    // The popover's edge gives way while it is not yet as high as what has changed in it.
    fill(root, body_.view(), NSEdgeInsetsMake(0, 0, 0, 0), NSLayoutPriorityDragThatCannotResizeWindow);
    popover_ = std::make_unique<Popover>(root, NSPopoverBehaviorApplicationDefined,
                                         lifetime_.guard([this] { closes(); }));
}

PanelPopover::~PanelPopover() {
    close();
}

void PanelPopover::openBelow(NSView* anchor) {
    requireMainThread("PanelPopover::openBelow");
    anchor_ = anchor;
    NSApplication* application = NSApplication.sharedApplication;
    before_ = application.active ? nil : NSWorkspace.sharedWorkspace.frontmostApplication;
    isOpen_ = true;
    panel_.opened();
    draw();
    popover_->showBelow(anchor);
    dismissal_.start();
    [application activate];
    takeKeyboard();
    shown_(true);
}

void PanelPopover::close() {
    if (isOpen_)
        popover_->close();
}

// Nobody else would take the keyboard back from an app that has no window left.
void PanelPopover::closeAndStepBack() {
    NSRunningApplication* before = std::exchange(before_, nil);
    close();
    NSApplication* application = NSApplication.sharedApplication;
    if (before == nil || before.terminated || !application.active)
        return;
    [application yieldActivationToApplication:before];
    if (![before activateFromApplication:NSRunningApplication.currentApplication options:0])
        NSLog(@"Wakeloft: the app that was in front before the panel could not be brought back there.");
}

void PanelPopover::closes() {
    if (!std::exchange(isOpen_, false))
        return;
    before_ = nil;
    dismissal_.stop();
    armTick();
    settings_.closePopover();
    shown_(false);
}

void PanelPopover::takeKeyboard() {
    if (isOpen_)
        [popover_->window() makeKeyWindow];
}

void PanelPopover::refresh() {
    if (isOpen_)
        draw();
}

void PanelPopover::draw() {
    const bool hasNewContent = body_.setContent(panel_.content());
    const bool hasNewTrouble = body_.setSettingsTrouble(source_.menu.content().failure);
    if (hasNewContent || hasNewTrouble)
        popover_->fit();
    armTick();
}

void PanelPopover::armTick() {
    [std::exchange(tick_, nil) invalidate];
    const auto wait = isOpen_ ? panel_.untilStatusLineTicks() : std::nullopt;
    if (!wait)
        return;
    // No cycle: the run loop holds the timer, the timer its block, and that does not keep this object.
    const auto due = lifetime_.guard([this] { refresh(); });
    NSTimer* tick = [NSTimer timerWithTimeInterval:*wait
                                           repeats:NO
                                             block:^(NSTimer*) {
                                                 requireMainThread("the panel's countdown");
                                                 const auto run = due; // it arms the next timer
                                                 run();
                                             }];
    [NSRunLoop.mainRunLoop addTimer:tick forMode:NSRunLoopCommonModes];
    tick_ = tick;
}

bool PanelPopover::keyPressed(NSEvent* event) {
    NSString* characters = event.characters;
    if (characters == nil || plainText(characters) != QuitConfirmationAlert::escapeKey)
        return settings_.performShortcut(event);
    closeAndStepBack();
    return true;
}

bool PanelPopover::isPartOfPanel(NSWindow* window) const {
    return window == popover_->window() || window == anchor_.window || settings_.isWindowOfPopover(window);
}

} // namespace wakeloft
