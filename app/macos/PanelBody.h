// For the views.
#pragma once

#include "ButtonRow.h"
#include "NoticeList.h"
#include "PanelHeader.h"
#include "SettingsButton.h"
#include "SwitchRow.h"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Everything within the panel's edges, top to bottom.
class PanelBody {
  public:
    PanelBody(const ActionButton::Perform& perform, std::function<void()> settingsClicked);

    /// Changes only what differs: whether anything but the status line did.
    bool setContent(const PanelContent& content);
    /// What went wrong with a command of the settings; empty: nothing. Whether that differs.
    bool setSettingsTrouble(const std::string& sentence);

    [[nodiscard]] NSView* view() const { return blocks_; }
    SettingsButton& settingsButton() { return settings_; }

  private:
    void arrange();

    PanelContent content_;
    std::string settingsTrouble_;
    PanelHeader header_;
    NSTextField* explanation_;
    ActionButton mainButton_;
    NSTextField* sessionCaption_;
    ButtonRow sessionButtons_;
    SwitchRow deepwake_;
    NoticeList deepwakeNotices_;
    NoticeList notices_;
    NSView* loginDivider_;
    SwitchRow openAtLogin_;
    NoticeList loginNotices_;
    NSView* settingsDivider_;
    SettingsButton settings_;
    NoticeList settingsNotices_;
    NSStackView* blocks_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
