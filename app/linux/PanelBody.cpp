#include "PanelBody.h"

#include "Theme.h"

#include <QEvent>

#include <utility>

namespace wakeloft {

namespace {

constexpr int sideMargin = 16;
constexpr int topMargin = 14;
constexpr int bottomMargin = 16;
constexpr int bottomMarginBelowLink = 12; // a link has some air of its own
constexpr int gapBetweenBlocks = 14;
constexpr int gapBelowCaption = 6;
constexpr int gapBetweenNotices = 8;

bool hasFocusRing(const QWidget* widget) {
    const auto* button = dynamic_cast<const ActionButton*>(widget);
    return button != nullptr && button->hasFocusRing();
}

} // namespace

PanelBody::PanelBody(ActionButton::Perform perform, QWidget* parent)
    : QWidget(parent),
      perform_(std::move(perform)),
      header_(new PanelHeader(this)),
      explanation_(new TextLabel(scaledFont(fontScale::small), role::secondaryText, this)),
      mainButton_(new ActionButton(ActionButton::Kind::main, perform_, this)),
      sessionCaption_(new TextLabel(scaledFont(fontScale::small), role::secondaryText, this)),
      sessionButtons_(new ButtonGrid(perform_, this)) {}

void PanelBody::setContent(const PanelContent& content) {
    const QWidget* focused = focusWidget();
    const bool hadRing = hasFocusRing(focused);

    PanelContent before = std::exchange(content_, content);
    header_->setContent(content);
    before.statusLine = content.statusLine;
    before.spokenStatus = content.spokenStatus;
    if (before != content)
        arrange();

    if (focused != nullptr && !focused->isVisibleTo(this)) // its row has gone
        focusMainButton(hadRing ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

void PanelBody::arrange() {
    explanation_->setText(QString::fromStdString(content_.explanation));
    explanation_->setVisible(!content_.explanation.empty());
    mainButton_->setContent(content_.mainButton);
    sessionCaption_->setText(QString::fromStdString(content_.sessionCaption));
    sessionCaption_->setVisible(!content_.sessionCaption.empty());
    sessionButtons_->setContent(content_.sessionButtons);
    sessionButtons_->setVisible(!content_.sessionButtons.empty());
    setNotices(content_.notices);
    chainTabOrder();
    place();
}

void PanelBody::setNotices(const std::vector<PanelNotice>& notices) {
    while (notices_.size() < notices.size())
        notices_.push_back(new NoticeRow(perform_, this));
    for (size_t i = 0; i < notices_.size(); ++i) {
        if (i < notices.size())
            notices_[i]->setContent(notices[i]);
        notices_[i]->setVisible(i < notices.size());
    }
}

std::vector<PanelBody::Block> PanelBody::blocks() const {
    std::vector<Block> blocks{{header_, topMargin}};
    if (!content_.explanation.empty())
        blocks.push_back({explanation_, gapBetweenBlocks});
    blocks.push_back({mainButton_, gapBetweenBlocks});
    const bool hasCaption = !content_.sessionCaption.empty();
    if (hasCaption)
        blocks.push_back({sessionCaption_, gapBetweenBlocks});
    if (!content_.sessionButtons.empty())
        blocks.push_back({sessionButtons_, hasCaption ? gapBelowCaption : gapBetweenBlocks});
    for (size_t i = 0; i < content_.notices.size(); ++i)
        blocks.push_back({notices_[i], i == 0 ? gapBetweenBlocks : gapBetweenNotices, NoticeRow::sideMargin});
    return blocks;
}

void PanelBody::chainTabOrder() {
    QWidget* last = mainButton_;
    const auto append = [&](QWidget* widget) {
        setTabOrder(last, widget);
        last = widget;
    };
    for (ActionButton* button : sessionButtons_->buttons())
        append(button);
    for (const NoticeRow* notice : notices_)
        if (notice->link() != nullptr)
            append(notice->link());
}

int PanelBody::widthOf(const Block& block, int bodyWidth) {
    return bodyWidth - 2 * (sideMargin - block.overhang);
}

int PanelBody::heightForWidth(int width) const {
    const bool endsWithLink = !content_.notices.empty() && content_.notices.back().link;
    int height = endsWithLink ? bottomMarginBelowLink : bottomMargin;
    for (const Block& block : blocks())
        height += block.gapAbove + block.widget->heightForWidth(widthOf(block, width));
    return height;
}

void PanelBody::place() {
    int y = 0;
    for (const Block& block : blocks()) {
        y += block.gapAbove;
        const int blockWidth = widthOf(block, width());
        const int blockHeight = block.widget->heightForWidth(blockWidth);
        block.widget->setGeometry(sideMargin - block.overhang, y, blockWidth, blockHeight);
        y += blockHeight;
    }
}

void PanelBody::focusMainButton(Qt::FocusReason reason) {
    mainButton_->setFocus(reason);
}

void PanelBody::resizeEvent(QResizeEvent*) {
    place();
}

void PanelBody::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LayoutDirectionChange)
        arrange();
    QWidget::changeEvent(event);
}

} // namespace wakeloft
