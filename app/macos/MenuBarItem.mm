#include "MenuBarItem.h"

#include "FoundationText.h"
#include "GlyphImage.h"
#include "PanelPopover.h"
#include "support/Lifetime.h"
#include "support/MainThread.h"

#include <utility>

namespace wakeloft {

struct MenuBarItem::Views {
    AwakePanel& panel;
    SettingsSource settings;
    TrayContent shown;
    NSStatusItem* item;
    ActionHandler* pressed;
    std::unique_ptr<PanelPopover> popover; ///< none before it is first opened
    Lifetime lifetime;

    Views(AwakePanel& panelToShow, const SettingsSource& settingsToShow);
    Views(const Views&) = delete;
    Views& operator=(const Views&) = delete;
    ~Views();

    void draw();
    void refresh();
    void openPanel();
    void press();
    void highlight(bool isOpen);
    void highlightAfterPress();
};

MenuBarItem::Views::Views(AwakePanel& panelToShow, const SettingsSource& settingsToShow)
    : panel(panelToShow),
      settings(settingsToShow),
      shown(panel.trayContent()),
      item([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]) {
    NSStatusBarButton* button = item.button;
    if (button == nil) {
        NSLog(@"Wakeloft: the menu bar gives its item no button.");
        return;
    }
    // No cycle: the button holds its handler weakly, and the handler none of the views.
    pressed = handlerOf(button, [this] { press(); });
    [button sendActionOn:NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown]; // as menus open
    draw();
}

MenuBarItem::Views::~Views() {
    popover.reset();
    [NSStatusBar.systemStatusBar removeStatusItem:item];
}

void MenuBarItem::Views::draw() {
    NSStatusBarButton* button = item.button;
    const auto direction = shown.isRightToLeft ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
    button.image = templateImage(shown.icon.image(direction));
    button.accessibilityLabel = foundationText(shown.spokenLabel);
}

void MenuBarItem::Views::refresh() {
    const auto content = panel.trayContent();
    const auto before = std::exchange(shown, content);
    if (before.icon != content.icon || before.spokenLabel != content.spokenLabel)
        draw();
    if (popover != nullptr)
        popover->refresh();
}

void MenuBarItem::Views::openPanel() {
    NSStatusBarButton* button = item.button;
    if (button == nil || button.window == nil) {
        NSLog(@"Wakeloft: the menu bar shows no item for the panel to open at.");
        return;
    }
    if (popover == nullptr)
        popover = std::make_unique<PanelPopover>(panel, settings, [this](bool isOpen) { highlight(isOpen); });
    popover->openBelow(button);
}

void MenuBarItem::Views::press() {
    if (popover != nullptr && popover->isOpen())
        popover->closeAndStepBack();
    else
        openPanel();
}

void MenuBarItem::Views::highlight(bool isOpen) {
    [item.button highlight:isOpen];
    if (!isOpen)
        return;
    // The press that opens the panel takes the highlight away when it ends. Until then the run loop is in
    // another mode. No cycle: the run loop holds the block, and that does not keep this object.
    const auto later = lifetime.guard([this] { highlightAfterPress(); });
    [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                    block:^{
                                        requireMainThread("the highlight of the menu bar's item");
                                        later();
                                    }];
}

void MenuBarItem::Views::highlightAfterPress() {
    if (popover->isOpen())
        [item.button highlight:YES];
}

MenuBarItem::MenuBarItem(AwakePanel& panel, const SettingsSource& settings)
    : views_(std::make_unique<Views>(panel, settings)),
      panelChanged_(panel.changed().subscribe([this] { views_->refresh(); })) {}

MenuBarItem::~MenuBarItem() = default;

void MenuBarItem::openPanel() {
    requireMainThread("MenuBarItem::openPanel");
    views_->openPanel();
}

void MenuBarItem::activate() {
    requireMainThread("MenuBarItem::activate");
    [NSApplication.sharedApplication activate];
    if (views_->popover != nullptr)
        views_->popover->takeKeyboard();
}

} // namespace wakeloft
