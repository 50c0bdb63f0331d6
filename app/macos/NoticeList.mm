#include "NoticeList.h"

#include "GlyphImage.h"
#include "Layout.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr CGFloat symbolWidth = PanelContent::noticeSymbolWidth;
constexpr CGFloat symbolGap = 6;
constexpr CGFloat linkGap = 2;
constexpr CGFloat noticeGap = 8;

NSColor* symbolColor(PanelNotice::Symbol symbol) {
    switch (symbol) {
    case PanelNotice::Symbol::information:
        return NSColor.secondaryLabelColor;
    case PanelNotice::Symbol::failure:
        return NSColor.systemRedColor;
    case PanelNotice::Symbol::warning:
    case PanelNotice::Symbol::heat:
        break;
    }
    return NSColor.systemOrangeColor;
}

} // namespace

NoticeRow::NoticeRow(const ActionButton::Perform& perform, CGFloat width)
    : symbol_(silentImageView()),
      text_(paragraph(styledFont(NSFontTextStyleFootnote), NSColor.secondaryLabelColor,
                      width - symbolWidth - symbolGap)),
      link_(ActionButton::Kind::link, perform),
      grid_([NSGridView gridViewWithViews:@[
          @[ symbol_, text_ ],
          @[ NSGridCell.emptyContentView, link_.view() ],
      ]]) {
    grid_.rowAlignment = NSGridRowAlignmentFirstBaseline;
    grid_.rowSpacing = linkGap;
    grid_.columnSpacing = symbolGap;
    [grid_ columnAtIndex:0].width = symbolWidth;
}

void NoticeRow::setContent(const PanelNotice& content) {
    const bool hasText = !content.text.empty();
    symbol_.image = symbolImage(std::string(symbolName(content.symbol)), text_.font.pointSize);
    symbol_.contentTintColor = symbolColor(content.symbol);
    setText(text_, content.text);
    text_.textColor =
        content.symbol == PanelNotice::Symbol::failure ? NSColor.systemRedColor : NSColor.secondaryLabelColor;
    if (content.link)
        link_.setContent(*content.link);
    [grid_ rowAtIndex:0].hidden = !hasText;
    [grid_ columnAtIndex:0].hidden = !hasText; // a link alone begins where the text of the panel does
    [grid_ rowAtIndex:1].hidden = !content.link;
}

NoticeList::NoticeList(ActionButton::Perform perform, CGFloat width)
    : perform_(std::move(perform)), width_(width), rows_(column(@[], noticeGap)) {}

void NoticeList::setContent(const std::vector<PanelNotice>& content) {
    while (notices_.size() < content.size())
        [rows_ addArrangedSubview:notices_.emplace_back(perform_, width_).view()];
    for (std::size_t i = 0; i < notices_.size(); ++i) {
        if (i < content.size())
            notices_[i].setContent(content[i]);
        notices_[i].view().hidden = i >= content.size();
    }
    rows_.hidden = content.empty();
}

} // namespace wakeloft
