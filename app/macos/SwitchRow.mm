#include "SwitchRow.h"

#include "FoundationText.h"
#include "Layout.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr CGFloat switchGap = 12;
constexpr CGFloat widestSwitch = 44;
constexpr CGFloat footnoteGap = 3;

NSSwitch* makeSwitch(NSControlSize size) {
    NSSwitch* made = [[NSSwitch alloc] initWithFrame:NSZeroRect];
    made.controlSize = size;
    [made setContentHuggingPriority:NSLayoutPriorityRequired
                     forOrientation:NSLayoutConstraintOrientationHorizontal];
    return made;
}

} // namespace

SwitchRow::SwitchRow(NSControlSize size, Perform perform, CGFloat width)
    : title_(
          paragraph(styledFont(NSFontTextStyleBody), NSColor.labelColor, width - switchGap - widestSwitch)),
      switch_(makeSwitch(size)),
      footnote_(paragraph(styledFont(NSFontTextStyleFootnote), NSColor.secondaryLabelColor, width)),
      rows_(column(@[ row(@[ title_, switch_ ], switchGap), footnote_ ], footnoteGap)),
      // No cycle: the switch holds its handler weakly, and the handler none of the views.
      flipped_(handlerOf(switch_, [this, perform = std::move(perform)] {
          const PanelAction action = content_.action; // performing may change this row
          perform(action);
          showState();
      })) {
    setWidth(title_, width - switchGap - switch_.intrinsicContentSize.width);
    title_.accessibilityElement = NO; // it is the switch's own name
}

void SwitchRow::setContent(const PanelSwitch& content) {
    content_ = content;
    setText(title_, content.title);
    title_.textColor = content.isEnabled ? NSColor.labelColor : NSColor.secondaryLabelColor;
    switch_.accessibilityLabel = foundationText(content.title);
    switch_.enabled = content.isEnabled;
    setText(footnote_, content.footnote);
    footnote_.hidden = content.footnote.empty();
    showState();
}

void SwitchRow::showState() {
    switch_.state = content_.isOn ? NSControlStateValueOn : NSControlStateValueOff;
}

} // namespace wakeloft
