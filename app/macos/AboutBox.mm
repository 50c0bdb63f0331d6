#include "AboutBox.h"

#include "GlyphImage.h"
#include "Layout.h"
#include "status/AwakeGlyph.h"

namespace wakeloft {

namespace {

constexpr CGFloat width = 224;
constexpr CGFloat margin = 18;
constexpr CGFloat gapBelowGlyph = 8;
constexpr CGFloat gapBelowTitle = 2;
constexpr CGFloat gapBelowVersion = 8;

NSTextField* line(NSFontTextStyle style, NSColor* color, const std::string& text) {
    NSTextField* line = paragraph(styledFont(style), color, width - 2 * margin);
    line.alignment = NSTextAlignmentCenter;
    setText(line, text);
    return line;
}

} // namespace

NSView* aboutBox(const AboutPopupContent& content) {
    NSImageView* glyph = silentImageView();
    glyph.image = templateImage(AwakeGlyph{}.image(AboutPopupContent::glyphPoints));
    glyph.contentTintColor = NSColor.labelColor;
    NSTextField* title = line(NSFontTextStyleHeadline, NSColor.labelColor, content.title);
    NSTextField* version = line(NSFontTextStyleSubheadline, NSColor.secondaryLabelColor, content.version);
    version.hidden = content.version.empty();
    NSTextField* copyright = line(NSFontTextStyleFootnote, NSColor.secondaryLabelColor, content.copyright);

    NSStackView* lines = column(@[ glyph, title, version, copyright ], gapBelowTitle);
    lines.alignment = NSLayoutAttributeCenterX;
    [lines setCustomSpacing:gapBelowGlyph afterView:glyph];
    [lines setCustomSpacing:content.version.empty() ? gapBelowVersion : gapBelowTitle afterView:title];
    [lines setCustomSpacing:gapBelowVersion afterView:version];

    NSView* box = [[NSView alloc] initWithFrame:NSZeroRect];
    fill(box, lines, NSEdgeInsetsMake(margin, margin, margin, margin));
    setWidth(box, width);
    setDirection(box, content.isRightToLeft);
    return box;
}

} // namespace wakeloft
