#include "PanelBody.h"

#include "Theme.h"

#include <QEvent>

#include <utility>

namespace wakeloft {

namespace {

constexpr int sideMargin = 16;
constexpr int topMargin = 14;
constexpr int bottomMargin = 12;
constexpr auto gapBetweenBlocks = static_cast<int>(PanelContent::blockSpacing);
constexpr auto gapBelowCaption = static_cast<int>(PanelContent::captionSpacing);
constexpr int gapBelowSwitch = 8;
constexpr int gapAboveSettings = 10;

bool hasFocusRing(const QWidget* widget) {
    if (const auto* button = dynamic_cast<const ActionButton*>(widget))
        return button->hasFocusRing();
    if (const auto* button = dynamic_cast<const SettingsButton*>(widget))
        return button->hasFocusRing();
    const auto* row = dynamic_cast<const SwitchRow*>(widget);
    return row != nullptr && row->hasFocusRing();
}

} // namespace

PanelBody::PanelBody(ActionButton::Perform perform, QWidget* parent)
    : QWidget(parent),
      perform_(std::move(perform)),
      header_(new PanelHeader(this)),
      explanation_(new TextLabel(scaledFont(fontScale::small), role::secondaryText, this)),
      mainButton_(new ActionButton(ActionButton::Kind::main, perform_, this)),
      sessionCaption_(new TextLabel(scaledFont(fontScale::small), role::secondaryText, this)),
      sessionButtons_(new ButtonGrid(perform_, this)),
      deepwake_(new SwitchRow(perform_, this)),
      deepwakeNotices_(new NoticeList(perform_, this)),
      notices_(new NoticeList(perform_, this)),
      loginDivider_(new Divider(this)),
      openAtLogin_(new SwitchRow(perform_, this)),
      loginNotices_(new NoticeList(perform_, this)),
      settingsDivider_(new Divider(this)),
      settings_(new SettingsButton(this)),
      settingsNotices_(new NoticeList(perform_, this)) {
    settingsNotices_->hide(); // until there is trouble
}

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
    deepwake_->setContent(content_.deepwake);
    deepwakeNotices_->setContent(content_.deepwakeNotices);
    deepwakeNotices_->setVisible(!content_.deepwakeNotices.empty());
    notices_->setContent(content_.notices);
    notices_->setVisible(!content_.notices.empty());
    openAtLogin_->setContent(content_.openAtLogin);
    loginNotices_->setContent(content_.loginNotices);
    loginNotices_->setVisible(!content_.loginNotices.empty());
    chainTabOrder();
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
    blocks.push_back({deepwake_, gapBetweenBlocks, SwitchRow::ringMargin, SwitchRow::ringMargin});
    if (!content_.deepwakeNotices.empty())
        blocks.push_back({deepwakeNotices_, gapBelowSwitch, NoticeRow::sideMargin});
    if (!content_.notices.empty())
        blocks.push_back({notices_, gapBetweenBlocks, NoticeRow::sideMargin});
    blocks.push_back({loginDivider_, gapBetweenBlocks});
    blocks.push_back({openAtLogin_, gapBetweenBlocks, SwitchRow::ringMargin, SwitchRow::ringMargin});
    if (!content_.loginNotices.empty())
        blocks.push_back({loginNotices_, gapBelowSwitch, NoticeRow::sideMargin});
    blocks.push_back({settingsDivider_, gapBetweenBlocks});
    blocks.push_back({settings_, gapAboveSettings, SettingsButton::sideMargin});
    if (!settingsTrouble_.empty())
        blocks.push_back({settingsNotices_, gapBelowSwitch, NoticeRow::sideMargin});
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
    const auto appendLinks = [&](const NoticeList* notices) {
        for (ActionButton* link : notices->links())
            append(link);
    };
    append(deepwake_);
    appendLinks(deepwakeNotices_);
    appendLinks(notices_);
    append(openAtLogin_);
    appendLinks(loginNotices_);
    append(settings_);
}

int PanelBody::place() {
    int y = 0;
    for (const Block& block : blocks()) {
        y += block.gapAbove - block.rise;
        const int blockWidth = fixedWidth - 2 * (sideMargin - block.overhang);
        const int blockHeight = block.widget->heightForWidth(blockWidth);
        block.widget->setGeometry(sideMargin - block.overhang, y, blockWidth, blockHeight);
        y += blockHeight - block.rise;
    }
    return y + bottomMargin;
}

void PanelBody::setSettingsTrouble(const std::string& sentence) {
    if (std::exchange(settingsTrouble_, sentence) == sentence)
        return;
    settingsNotices_->setContent({{PanelNotice::Symbol::warning, sentence, std::nullopt}});
    settingsNotices_->setVisible(!sentence.empty());
}

void PanelBody::focusMainButton(Qt::FocusReason reason) {
    mainButton_->setFocus(reason);
}

void PanelBody::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LayoutDirectionChange)
        arrange();
    QWidget::changeEvent(event);
}

} // namespace wakeloft
