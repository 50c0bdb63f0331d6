#pragma once

#include "GlyphImage.h"
#include "SettingsContent.h"
#include "TextLabel.h"

namespace wakeloft {

/// Draws an `AboutPopupContent`: centred, one below the other.
class AboutBox : public QWidget {
  public:
    explicit AboutBox(QWidget* parent = nullptr);

    void setContent(const AboutPopupContent& content);
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    /// Places everything where `isPlacing`; the height that it takes.
    int layOut(int width, bool isPlacing) const;

    GlyphImage* glyph_;
    TextLabel* title_;
    TextLabel* version_;
    TextLabel* copyright_;
};

} // namespace wakeloft
