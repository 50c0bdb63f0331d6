#include "TextLabel.h"

#include "TextBlock.h"

#include <QPainter>

namespace wakeloft {

TextLabel::TextLabel(const QFont& font, QPalette::ColorRole color, QWidget* parent) : QLabel(parent) {
    setFont(font);
    setForegroundRole(color);
    setTextFormat(Qt::PlainText);
}

int TextLabel::heightForWidth(int width) const {
    return qRound(TextBlock(text(), {font(), layoutDirection()}, width).height());
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const bool isCentered = (alignment() & Qt::AlignHCenter) != 0;
    TextBlock(text(), {font(), layoutDirection(), isCentered}, width()).draw(painter, {0, 0});
}

} // namespace wakeloft
