#include "AboutBox.h"

#include "Theme.h"
#include "status/AwakeGlyph.h"

namespace wakeloft {

namespace {

constexpr int margin = 18;
constexpr int gapBelowGlyph = 8;
constexpr int gapBelowTitle = 2;
constexpr int gapBelowVersion = 8;

} // namespace

AboutBox::AboutBox(QWidget* parent)
    : QWidget(parent),
      glyph_(new GlyphImage(AwakeGlyph{}.image(AboutPopupContent::glyphPoints), this)),
      title_(new TextLabel(scaledFont(fontScale::body, QFont::DemiBold), role::text, this)),
      version_(new TextLabel(scaledFont(fontScale::small), role::secondaryText, this)),
      copyright_(new TextLabel(scaledFont(fontScale::footnote), role::secondaryText, this)) {
    for (TextLabel* label : {title_, version_, copyright_})
        label->setAlignment(Qt::AlignHCenter);
}

void AboutBox::setContent(const AboutPopupContent& content) {
    title_->setText(QString::fromStdString(content.title));
    version_->setText(QString::fromStdString(content.version));
    copyright_->setText(QString::fromStdString(content.copyright));
    version_->setVisible(!content.version.empty());
    setAccessibleName(title_->text());
    layOut(width(), true);
}

int AboutBox::layOut(int width, bool isPlacing) const {
    const int textWidth = width - 2 * margin;
    int y = margin;
    const auto put = [&](QWidget& widget, int height, int gapBelow) {
        if (isPlacing)
            widget.setGeometry(margin, y, textWidth, height);
        y += height + gapBelow;
    };
    put(*glyph_, glyph_->sizeHint().height(), gapBelowGlyph);
    put(*title_, title_->heightForWidth(textWidth), gapBelowTitle);
    if (!version_->text().isEmpty())
        put(*version_, version_->heightForWidth(textWidth), gapBelowVersion);
    put(*copyright_, copyright_->heightForWidth(textWidth), 0);
    return y + margin;
}

int AboutBox::heightForWidth(int width) const {
    return layOut(width, false);
}

void AboutBox::resizeEvent(QResizeEvent*) {
    layOut(width(), true);
}

} // namespace wakeloft
