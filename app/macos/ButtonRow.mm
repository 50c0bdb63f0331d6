#include "ButtonRow.h"

#include "Layout.h"

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace {

constexpr CGFloat gap = 6;

} // namespace

ButtonRow::Cell::Cell(const ActionButton::Perform& perform)
    : button(ActionButton::Kind::small, perform),
      width([button.view().widthAnchor constraintEqualToConstant:0]) {
    width.active = YES;
}

ButtonRow::ButtonRow(ActionButton::Perform perform, CGFloat width)
    : perform_(std::move(perform)), width_(width), stack_(row(@[], gap)) {}

void ButtonRow::setContent(const std::vector<PanelButton>& content) {
    while (cells_.size() < content.size())
        [stack_ addArrangedSubview:cells_.emplace_back(perform_).button.view()];
    for (std::size_t i = 0; i < cells_.size(); ++i) {
        if (i < content.size())
            cells_[i].button.setContent(content[i]);
        cells_[i].button.view().hidden = i >= content.size();
    }
    place(content.size());
}

void ButtonRow::place(std::size_t count) {
    if (count == 0)
        return;
    CGFloat widest = 0;
    for (std::size_t i = 0; i < count; ++i)
        widest = std::max(widest, cells_[i].button.view().intrinsicContentSize.width);
    const auto columns = static_cast<CGFloat>(count);
    const CGFloat share = (width_ - gap * (columns - 1)) / columns;
    const bool fits = widest <= share;
    stack_.orientation =
        fits ? NSUserInterfaceLayoutOrientationHorizontal : NSUserInterfaceLayoutOrientationVertical;
    stack_.alignment = fits ? NSLayoutAttributeCenterY : NSLayoutAttributeLeading;
    for (const Cell& cell : cells_)
        cell.width.constant = fits ? share : width_;
}

} // namespace wakeloft
