// For the views.
#pragma once

#include "ActionHandler.h"
#include "SettingsContent.h"

#import <AppKit/AppKit.h>

#include <deque>

NS_ASSUME_NONNULL_BEGIN

namespace wakeloft {

/// Draws a `PresetRow`: a star and the length beside it. It shows the state that it was given and never one
/// of its own: a click only hands the length on.
class StarRow {
  public:
    using Toggle = std::function<void(AwakeDuration)>;

    explicit StarRow(Toggle toggle);
    StarRow(const StarRow&) = delete;
    StarRow& operator=(const StarRow&) = delete;
    ~StarRow() = default;

    void setContent(const PresetRow& content);
    [[nodiscard]] NSView* view() const { return star_; }

  private:
    void showState();

    PresetRow content_;
    NSButton* star_;
    ActionHandler* clicked_;
};

/// Draws a `SettingsPopupContent`: the title, a row for each length, and the hint.
class PresetChooser {
  public:
    explicit PresetChooser(StarRow::Toggle toggle);

    void setContent(const SettingsPopupContent& content);
    [[nodiscard]] NSView* view() const { return view_; }

  private:
    StarRow::Toggle toggle_;
    std::deque<StarRow> stars_;
    NSTextField* title_;
    NSStackView* rows_;
    NSTextField* hint_;
    NSView* view_;
};

} // namespace wakeloft

NS_ASSUME_NONNULL_END
