#include "PanelHeader.h"

#include "FoundationText.h"
#include "GlyphImage.h"
#include "Layout.h"

namespace wakeloft {

namespace {

constexpr double glyphPoints = 23; ///< either vessel is then nearly as wide as its box
constexpr CGFloat glyphWidth = 33;
constexpr CGFloat glyphGap = 10;
constexpr CGFloat lineGap = 1;

/// Digits of one width, so that nothing moves while they count.
NSFont* countdownFont() {
    const CGFloat size = styledFont(NSFontTextStyleBody).pointSize;
    return [NSFont monospacedDigitSystemFontOfSize:size weight:NSFontWeightMedium];
}

NSImage* glyphOf(const MenuBarIcon& icon) {
    return templateImage(icon.glyph().image(glyphPoints));
}

} // namespace

PanelHeader::PanelHeader()
    : glyph_(silentImageView()),
      title_(label(styledFont(NSFontTextStyleHeadline), NSColor.labelColor)),
      statusLine_(label(countdownFont(), NSColor.labelColor)),
      row_(row(@[ glyph_, column(@[ title_, statusLine_ ], lineGap) ], glyphGap)) {
    setWidth(glyph_, glyphWidth);
    glyph_.contentTintColor = NSColor.labelColor;
    glyph_.image = glyphOf(icon_);
    row_.accessibilityElement = YES;
    row_.accessibilityRole = NSAccessibilityStaticTextRole;
    row_.accessibilityChildren = @[]; // its label says it all
}

void PanelHeader::setContent(const PanelContent& content) {
    if (content.icon != icon_) {
        icon_ = content.icon;
        glyph_.image = glyphOf(icon_);
    }
    setText(title_, content.title);
    setText(statusLine_, content.statusLine);
    row_.accessibilityLabel = foundationText(content.spokenStatus);
}

} // namespace wakeloft
