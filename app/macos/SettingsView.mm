#include "SettingsView.h"

#include "AboutBox.h"
#include "FoundationText.h"

namespace wakeloft {

namespace {

/// Pressed with the command key and no other. With that, the layouts of all scripts type Latin letters.
bool isCommand(NSEvent* event, const std::string& key) {
    constexpr NSEventModifierFlags modifiers = NSEventModifierFlagShift | NSEventModifierFlagControl |
                                               NSEventModifierFlagOption | NSEventModifierFlagCommand;
    NSString* characters = event.characters;
    return !key.empty() && characters != nil && plainText(characters) == key &&
           (event.modifierFlags & modifiers) == NSEventModifierFlagCommand;
}

} // namespace

SettingsView::SettingsView(const SettingsSource& source, SettingsButton& button)
    : source_(source),
      button_(button),
      menuChanged_(source.menu.changed().subscribe([this] { refresh(); })),
      presetsChanged_(source.presets.changed().subscribe([this] { refresh(); })) {
    button_.setContent(source_.menu.content());
}

NSMenuItem* SettingsView::itemFor(const SettingsMenuItem& content) {
    if (content.title.empty())
        return [NSMenuItem separatorItem];
    // No cycle: the item holds the handler, and that keeps neither the item nor this object.
    ActionHandler* handler = [[ActionHandler alloc]
        initWithAction:lifetime_.guard([this, action = content.action] { source_.menu.perform(action); })];
    NSMenuItem* item = [[NSMenuItem alloc] initWithTitle:foundationText(content.title)
                                                  action:@selector(run)
                                           keyEquivalent:foundationText(content.keyEquivalent)];
    item.target = handler;
    item.representedObject = handler;
    return item;
}

void SettingsView::openMenu() {
    const auto content = source_.menu.content();
    NSMenu* menu = [[NSMenu alloc] initWithTitle:foundationText(content.title)];
    menu.minimumWidth = SettingsMenuContent::minimumMenuWidth;
    menu.userInterfaceLayoutDirection = content.isRightToLeft ? NSUserInterfaceLayoutDirectionRightToLeft
                                                              : NSUserInterfaceLayoutDirectionLeftToRight;
    for (const auto& item : content.items)
        [menu addItem:itemFor(item)];
    menu_ = menu;
    const auto place = content.menuPlace(button_.anchor().bounds.size.width);
    // Returns when the menu has closed, and a command of it may have ended this object by then.
    [menu popUpMenuPositioningItem:nil atLocation:NSMakePoint(place.x, place.y) inView:button_.anchor()];
}

bool SettingsView::performShortcut(NSEvent* event) {
    for (const auto& item : source_.menu.content().items)
        if (isCommand(event, item.keyEquivalent)) {
            source_.menu.perform(item.action);
            return true;
        }
    return false;
}

void SettingsView::refresh() {
    const auto popup = source_.menu.content().popup;
    if (popup != shown_) {
        shown_ = popup;
        popover_.reset(); // closes
        chooser_.reset();
        if (shown_)
            showPopover(*shown_);
    } else if (chooser_ != nullptr && shown_) {
        chooser_->setContent(source_.presets.content());
    }
}

void SettingsView::showPopover(SettingsPopupKind kind) {
    if (button_.anchor().window == nil) {
        popoverCloses(kind); // the panel has closed meanwhile
        return;
    }
    NSView* content = nil;
    if (kind == SettingsPopupKind::settings) {
        chooser_ = std::make_unique<PresetChooser>(
            [this](AwakeDuration duration) { source_.presets.toggle(duration); });
        chooser_->setContent(source_.presets.content());
        content = chooser_->view();
    } else {
        content = aboutBox(source_.about.content());
    }
    // No cycle: what the popover tells does not keep this object.
    popover_ = std::make_unique<Popover>(content, NSPopoverBehaviorTransient,
                                         lifetime_.guard([this, kind] { popoverCloses(kind); }));
    popover_->showBelow(button_.anchor());
}

void SettingsView::popoverCloses(SettingsPopupKind kind) {
    if (shown_ == kind)
        shown_.reset(); // it closes by itself
    source_.menu.popupClosed(kind);
}

void SettingsView::closePopover() {
    if (popover_ != nullptr && shown_)
        popover_->close();
}

bool SettingsView::isWindowOfPopover(NSWindow* window) const {
    return popover_ != nullptr && popover_->window() == window;
}

} // namespace wakeloft
