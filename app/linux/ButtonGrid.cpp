#include "ButtonGrid.h"

#include <QStyle>

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace {

constexpr int gap = 6;

int cellWidth(int width, size_t columns) {
    const int count = static_cast<int>(columns);
    return (width - gap * (count - 1)) / count;
}

} // namespace

ButtonGrid::ButtonGrid(ActionButton::Perform perform, QWidget* parent)
    : QWidget(parent), perform_(std::move(perform)) {}

void ButtonGrid::setContent(const std::vector<PanelButton>& content) {
    while (pool_.size() < content.size())
        pool_.push_back(new ActionButton(ActionButton::Kind::small, perform_, this));
    count_ = content.size();
    for (size_t i = 0; i < pool_.size(); ++i) {
        if (i < count_)
            pool_[i]->setContent(content[i]);
        pool_[i]->setVisible(i < count_);
    }
    place(); // the size may stay the same
}

std::vector<ActionButton*> ButtonGrid::buttons() const {
    return {pool_.begin(), pool_.begin() + static_cast<std::ptrdiff_t>(count_)};
}

size_t ButtonGrid::columnsForWidth(int width) const {
    int widest = 0;
    for (size_t i = 0; i < count_; ++i)
        widest = std::max(widest, pool_[i]->naturalWidth());
    size_t columns = count_;
    while (columns > 1 && cellWidth(width, columns) < widest)
        --columns;
    return columns;
}

std::vector<ButtonGrid::Row> ButtonGrid::rowsForWidth(int width) const {
    std::vector<Row> rows;
    const size_t columns = columnsForWidth(width);
    int y = 0;
    for (size_t first = 0; first < count_; first += columns) {
        Row row{first, std::min(columns, count_ - first), y, 0};
        for (size_t i = 0; i < row.count; ++i)
            row.height = std::max(row.height, pool_[first + i]->heightForWidth(cellWidth(width, row.count)));
        y += row.height + gap;
        rows.push_back(row);
    }
    return rows;
}

int ButtonGrid::heightForWidth(int width) const {
    const std::vector<Row> rows = rowsForWidth(width);
    return rows.empty() ? 0 : rows.back().y + rows.back().height;
}

void ButtonGrid::place() {
    for (const Row& row : rowsForWidth(width())) {
        int x = 0;
        for (size_t i = 0; i < row.count; ++i) {
            // The last one takes the pixels that the division left over.
            const int cell = i + 1 == row.count ? width() - x : cellWidth(width(), row.count);
            const QRect logical(x, row.y, cell, row.height);
            pool_[row.first + i]->setGeometry(QStyle::visualRect(layoutDirection(), rect(), logical));
            x += cell + gap;
        }
    }
}

void ButtonGrid::resizeEvent(QResizeEvent*) {
    place();
}

} // namespace wakeloft
