#include "ActionButton.h"

#include "FoundationText.h"
#include "Layout.h"

#include <utility>

namespace wakeloft {

namespace {

NSButton* makeButton(ActionButton::Kind kind) {
    NSButton* button = [NSButton buttonWithTitle:@"" target:nil action:nil];
    switch (kind) {
    case ActionButton::Kind::main:
        button.bezelStyle = NSBezelStylePush;
        button.controlSize = NSControlSizeLarge;
        button.bezelColor = NSColor.controlAccentColor;
        button.keyEquivalent = @"\r";
        break;
    case ActionButton::Kind::small:
        button.bezelStyle = NSBezelStylePush;
        button.controlSize = NSControlSizeSmall;
        button.font = [NSFont systemFontOfSize:[NSFont systemFontSizeForControlSize:NSControlSizeSmall]];
        break;
    case ActionButton::Kind::link:
        button.bordered = NO;
        button.font = styledFont(NSFontTextStyleFootnote);
        button.contentTintColor = NSColor.linkColor;
        break;
    }
    return button;
}

} // namespace

ActionButton::ActionButton(Kind kind, Perform perform)
    : button_(makeButton(kind)),
      // No cycle: the button holds its handler weakly, and the handler none of the views.
      clicked_(handlerOf(button_, [this, perform = std::move(perform)] {
          const PanelAction action = action_; // performing may change this button
          perform(action);
      })) {}

void ActionButton::setContent(const PanelButton& content) {
    action_ = content.action;
    button_.title = foundationText(content.title);
    button_.accessibilityLabel =
        foundationText(content.spokenLabel.empty() ? content.title : content.spokenLabel);
}

} // namespace wakeloft
