#include "SettingsButton.h"

#include "FoundationText.h"
#include "GlyphImage.h"
#include "Layout.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr CGFloat chevronPoints = 10;
const NSEdgeInsets noInsets = NSEdgeInsetsMake(0, 0, 0, 0);

NSView* emptyView() {
    return [[NSView alloc] initWithFrame:NSZeroRect];
}

} // namespace

SettingsButton::SettingsButton(std::function<void()> clicked, CGFloat width)
    : row_(emptyView()),
      anchor_(emptyView()),
      button_([NSButton buttonWithTitle:@"" target:nil action:nil]),
      chevron_(silentImageView()),
      // No cycle: the button holds its handler weakly, and the handler none of the views.
      clicked_(handlerOf(button_, std::move(clicked))) {
    button_.bordered = NO;
    button_.alignment = NSTextAlignmentNatural;
    button_.imagePosition = NSImageLeading;
    button_.imageHugsTitle = YES;
    button_.accessibilityRole = NSAccessibilityMenuButtonRole;
    chevron_.contentTintColor = NSColor.secondaryLabelColor;
    fill(row_, anchor_, noInsets);
    fill(row_, button_, noInsets);
    [row_ addSubview:chevron_];
    chevron_.translatesAutoresizingMaskIntoConstraints = NO;
    [chevron_.trailingAnchor constraintEqualToAnchor:row_.trailingAnchor].active = YES;
    [chevron_.centerYAnchor constraintEqualToAnchor:row_.centerYAnchor].active = YES;
    setWidth(row_, width);
    [row_.heightAnchor constraintEqualToConstant:SettingsMenuContent::buttonHeight].active = YES;
}

void SettingsButton::setContent(const SettingsMenuContent& content) {
    button_.title = foundationText(content.title);
    button_.accessibilityLabel = button_.title;
    button_.image = symbolImage(content.symbol, NSFont.systemFontSize);
    chevron_.image = symbolImage(content.trailingSymbol, chevronPoints);
}

} // namespace wakeloft
