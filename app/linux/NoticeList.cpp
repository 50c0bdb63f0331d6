#include "NoticeList.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr int gap = 8;

} // namespace

NoticeList::NoticeList(ActionButton::Perform perform, QWidget* parent)
    : QWidget(parent), perform_(std::move(perform)) {}

void NoticeList::setContent(const std::vector<PanelNotice>& content) {
    count_ = content.size();
    while (rows_.size() < count_)
        rows_.push_back(new NoticeRow(perform_, this));
    for (size_t i = 0; i < rows_.size(); ++i) {
        if (i < count_)
            rows_[i]->setContent(content[i]);
        rows_[i]->setVisible(i < count_);
    }
    place();
}

int NoticeList::heightForWidth(int width) const {
    int height = 0;
    for (size_t i = 0; i < count_; ++i)
        height += (i == 0 ? 0 : gap) + rows_[i]->heightForWidth(width);
    return height;
}

std::vector<ActionButton*> NoticeList::links() const {
    std::vector<ActionButton*> links;
    for (size_t i = 0; i < count_; ++i)
        if (rows_[i]->link() != nullptr)
            links.push_back(rows_[i]->link());
    return links;
}

void NoticeList::place() {
    int y = 0;
    for (size_t i = 0; i < count_; ++i) {
        const int height = rows_[i]->heightForWidth(width());
        rows_[i]->setGeometry(0, y, width(), height);
        y += height + gap;
    }
}

void NoticeList::resizeEvent(QResizeEvent*) {
    place();
}

} // namespace wakeloft
