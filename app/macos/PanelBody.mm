#include "PanelBody.h"

#include "Layout.h"

#include <utility>

namespace wakeloft {

namespace {

constexpr CGFloat sideMargin = 16;
constexpr CGFloat topMargin = 14;
constexpr CGFloat bottomMargin = 12;
constexpr CGFloat innerWidth = PanelContent::width - 2 * sideMargin;
constexpr CGFloat gapBelowSwitch = 8;
constexpr CGFloat gapAboveSettings = 10;

NSBox* divider() {
    NSBox* line = [[NSBox alloc] initWithFrame:NSZeroRect];
    line.boxType = NSBoxSeparator;
    setWidth(line, innerWidth);
    [line.heightAnchor constraintEqualToConstant:1].active = YES;
    return line;
}

NSTextField* secondaryText() {
    return paragraph(styledFont(NSFontTextStyleCallout), NSColor.secondaryLabelColor, innerWidth);
}

} // namespace

PanelBody::PanelBody(const ActionButton::Perform& perform, std::function<void()> settingsClicked)
    : explanation_(secondaryText()),
      mainButton_(ActionButton::Kind::main, perform),
      sessionCaption_(secondaryText()),
      sessionButtons_(perform, innerWidth),
      deepwake_(NSControlSizeRegular, perform, innerWidth),
      deepwakeNotices_(perform, innerWidth),
      notices_(perform, innerWidth),
      loginDivider_(divider()),
      openAtLogin_(NSControlSizeSmall, perform, innerWidth),
      loginNotices_(perform, innerWidth),
      settingsDivider_(divider()),
      settings_(std::move(settingsClicked), innerWidth),
      settingsNotices_(perform, innerWidth),
      blocks_(column(
          @[
              header_.view(), explanation_, mainButton_.view(), sessionCaption_, sessionButtons_.view(),
              deepwake_.view(), deepwakeNotices_.view(), notices_.view(), loginDivider_, openAtLogin_.view(),
              loginNotices_.view(), settingsDivider_, settings_.view(), settingsNotices_.view()
          ],
          PanelContent::blockSpacing)) {
    blocks_.edgeInsets = NSEdgeInsetsMake(topMargin, sideMargin, bottomMargin, sideMargin);
    setWidth(blocks_, PanelContent::width);
    setWidth(mainButton_.view(), innerWidth);
    [blocks_ setCustomSpacing:PanelContent::captionSpacing afterView:sessionCaption_];
    [blocks_ setCustomSpacing:gapAboveSettings afterView:settingsDivider_];
    [blocks_ setCustomSpacing:gapBelowSwitch afterView:settings_.view()];
    settingsNotices_.setContent({});
}

bool PanelBody::setContent(const PanelContent& content) {
    PanelContent before = std::exchange(content_, content);
    if (before == content)
        return false;
    header_.setContent(content);
    before.statusLine = content.statusLine;
    before.spokenStatus = content.spokenStatus;
    if (before == content)
        return false;
    arrange();
    return true;
}

void PanelBody::arrange() {
    setText(explanation_, content_.explanation);
    explanation_.hidden = content_.explanation.empty();
    mainButton_.setContent(content_.mainButton);
    setText(sessionCaption_, content_.sessionCaption);
    sessionCaption_.hidden = content_.sessionCaption.empty();
    sessionButtons_.setContent(content_.sessionButtons);
    sessionButtons_.view().hidden = content_.sessionButtons.empty();
    deepwake_.setContent(content_.deepwake);
    deepwakeNotices_.setContent(content_.deepwakeNotices);
    notices_.setContent(content_.notices);
    openAtLogin_.setContent(content_.openAtLogin);
    loginNotices_.setContent(content_.loginNotices);
    const auto gapBelow = [](const std::vector<PanelNotice>& notices) {
        return notices.empty() ? PanelContent::blockSpacing : gapBelowSwitch;
    };
    [blocks_ setCustomSpacing:gapBelow(content_.deepwakeNotices) afterView:deepwake_.view()];
    [blocks_ setCustomSpacing:gapBelow(content_.loginNotices) afterView:openAtLogin_.view()];
    setDirection(blocks_, content_.isRightToLeft);
}

bool PanelBody::setSettingsTrouble(const std::string& sentence) {
    if (std::exchange(settingsTrouble_, sentence) == sentence)
        return false;
    if (sentence.empty())
        settingsNotices_.setContent({});
    else
        settingsNotices_.setContent({{PanelNotice::Symbol::warning, sentence, std::nullopt}});
    setDirection(blocks_, content_.isRightToLeft);
    return true;
}

} // namespace wakeloft
