#pragma once

#include "ActionButton.h"
#include "ButtonGrid.h"
#include "Divider.h"
#include "NoticeList.h"
#include "PanelHeader.h"
#include "SettingsButton.h"
#include "SwitchRow.h"
#include "TextLabel.h"

#include <QWidget>

#include <vector>

namespace wakeloft {

/// Everything within the panel's edges, top to bottom.
class PanelBody : public QWidget {
  public:
    static constexpr auto fixedWidth = static_cast<int>(PanelContent::width);

    PanelBody(ActionButton::Perform perform, QWidget* parent);

    /// Changes only what differs.
    void setContent(const PanelContent& content);
    /// Puts everything where its text leaves it room: the height of all. To be called after each change.
    int place();

    void focusMainButton(Qt::FocusReason reason);
    SettingsButton& settingsButton() { return *settings_; }
    /// What went wrong with a command of the settings; empty: nothing.
    void setSettingsTrouble(const std::string& sentence);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    struct Block {
        QWidget* widget = nullptr;
        int gapAbove = 0;
        int overhang = 0; ///< at both sides, beyond the text's margins
        int rise = 0;     ///< above and below, into the gaps
    };
    [[nodiscard]] std::vector<Block> blocks() const;
    void arrange();
    void chainTabOrder();

    ActionButton::Perform perform_;
    PanelContent content_;
    std::string settingsTrouble_;
    PanelHeader* header_;
    TextLabel* explanation_;
    ActionButton* mainButton_;
    TextLabel* sessionCaption_;
    ButtonGrid* sessionButtons_;
    SwitchRow* deepwake_;
    NoticeList* deepwakeNotices_;
    NoticeList* notices_;
    Divider* loginDivider_;
    SwitchRow* openAtLogin_;
    NoticeList* loginNotices_;
    Divider* settingsDivider_;
    SettingsButton* settings_;
    NoticeList* settingsNotices_;
};

} // namespace wakeloft
