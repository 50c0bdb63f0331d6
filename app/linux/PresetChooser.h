#pragma once

#include "StarRow.h"
#include "TextLabel.h"

#include <vector>

namespace wakeloft {

/// Draws a `SettingsPopupContent`: the title, a row for each length, and the hint.
class PresetChooser : public QWidget {
  public:
    explicit PresetChooser(StarRow::Toggle toggle, QWidget* parent = nullptr);

    void setContent(const SettingsPopupContent& content);
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    /// Places everything where `isPlacing`; the height that it takes.
    int layOut(int width, bool isPlacing) const;

    StarRow::Toggle toggle_;
    TextLabel* title_;
    std::vector<StarRow*> rows_;
    TextLabel* hint_;
};

} // namespace wakeloft
