#include "PresetChooser.h"

#include "Theme.h"

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace {

constexpr int margin = 16;
constexpr int rowOverhang = 6; // the rows' own padding: their stars line up with the texts
constexpr int gapBelowTitle = 10;
constexpr int gapAboveHint = 10;
constexpr auto rowGap = static_cast<int>(SettingsPopupContent::rowSpacing);
// A row is taller than its star and text by this much, which counts as space between the rows.
constexpr int rowSlack = 6;

} // namespace

PresetChooser::PresetChooser(StarRow::Toggle toggle, QWidget* parent)
    : QWidget(parent),
      toggle_(std::move(toggle)),
      title_(new TextLabel(scaledFont(fontScale::body, QFont::DemiBold), role::text, this)),
      hint_(new TextLabel(scaledFont(fontScale::footnote), role::secondaryText, this)) {}

void PresetChooser::setContent(const SettingsPopupContent& content) {
    title_->setText(QString::fromStdString(content.title));
    hint_->setText(QString::fromStdString(content.hint));
    setAccessibleName(title_->text());
    while (rows_.size() < content.rows.size())
        rows_.push_back(new StarRow(toggle_, this));
    for (size_t i = 0; i < rows_.size(); ++i) {
        if (i < content.rows.size())
            rows_[i]->setContent(content.rows[i]);
        rows_[i]->setVisible(i < content.rows.size());
    }
    const auto first = std::ranges::find_if(rows_, [](const StarRow* row) { return row->isEnabled(); });
    setFocusProxy(first == rows_.end() ? nullptr : *first);
    layOut(width(), true);
}

int PresetChooser::layOut(int width, bool isPlacing) const {
    const int textWidth = width - 2 * margin;
    int y = margin;
    const auto put = [&](QWidget& widget, int overhang, int height) {
        if (isPlacing)
            widget.setGeometry(margin - overhang, y, textWidth + 2 * overhang, height);
        y += height;
    };
    put(*title_, 0, title_->heightForWidth(textWidth));
    y += gapBelowTitle - rowSlack / 2;
    for (StarRow* row : rows_) {
        if (row->isHidden())
            continue;
        put(*row, rowOverhang, StarRow::fixedHeight);
        y += rowGap - rowSlack;
    }
    y += gapAboveHint - rowGap + rowSlack / 2;
    put(*hint_, 0, hint_->heightForWidth(textWidth));
    return y + margin;
}

int PresetChooser::heightForWidth(int width) const {
    return layOut(width, false);
}

void PresetChooser::resizeEvent(QResizeEvent*) {
    layOut(width(), true);
}

} // namespace wakeloft
