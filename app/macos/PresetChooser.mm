#include "PresetChooser.h"

#include "FoundationText.h"
#include "GlyphImage.h"
#include "Layout.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr CGFloat width = 224;
constexpr CGFloat margin = 16;
constexpr CGFloat gapAroundRows = 10;

/// To VoiceOver, too, a star is a check box.
NSButton* makeStar() {
    NSButton* star = [NSButton checkboxWithTitle:@"" target:nil action:nil];
    star.imagePosition = NSImageLeading;
    return star;
}

} // namespace

StarRow::StarRow(Toggle toggle)
    : star_(makeStar()),
      // No cycle: the star holds its handler weakly, and the handler none of the views.
      clicked_(handlerOf(star_, [this, toggle = std::move(toggle)] {
          toggle(content_.duration);
          showState();
      })) {}

void StarRow::setContent(const PresetRow& content) {
    content_ = content;
    star_.title = foundationText(content.label);
    star_.accessibilityLabel = foundationText(content.spokenLabel);
    star_.enabled = content.isEnabled;
    showState();
}

void StarRow::showState() {
    NSColor* color = content_.isStarred ? NSColor.systemYellowColor : NSColor.secondaryLabelColor;
    NSImage* image = symbolImage(content_.symbol, NSFont.systemFontSize, color);
    star_.image = image;
    star_.alternateImage = image; // the symbol tells the state, on its own
    star_.state = content_.isStarred ? NSControlStateValueOn : NSControlStateValueOff;
}

PresetChooser::PresetChooser(StarRow::Toggle toggle)
    : toggle_(std::move(toggle)),
      title_(label(styledFont(NSFontTextStyleHeadline), NSColor.labelColor)),
      rows_(column(@[], SettingsPopupContent::rowSpacing)),
      hint_(paragraph(styledFont(NSFontTextStyleFootnote), NSColor.secondaryLabelColor, width - 2 * margin)),
      view_([[NSView alloc] initWithFrame:NSZeroRect]) {
    fill(view_, column(@[ title_, rows_, hint_ ], gapAroundRows),
         NSEdgeInsetsMake(margin, margin, margin, margin));
    setWidth(view_, width);
}

void PresetChooser::setContent(const SettingsPopupContent& content) {
    setText(title_, content.title);
    while (stars_.size() < content.rows.size())
        [rows_ addArrangedSubview:stars_.emplace_back(toggle_).view()];
    for (std::size_t i = 0; i < stars_.size(); ++i) {
        if (i < content.rows.size())
            stars_[i].setContent(content.rows[i]);
        stars_[i].view().hidden = i >= content.rows.size();
    }
    setText(hint_, content.hint);
    setDirection(view_, content.isRightToLeft);
}

} // namespace wakeloft
