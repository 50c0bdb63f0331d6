#include "TextLabel.h"

#include <QPainter>

namespace wakeloft {

TextLabel::TextLabel(const QFont& font, QPalette::ColorRole color, QWidget* parent) : QLabel(parent) {
    setFont(font);
    setForegroundRole(color);
    setTextFormat(Qt::PlainText);
}

TextBlock::Format TextLabel::format() const {
    return {font(), layoutDirection(), (alignment() & Qt::AlignHCenter) != 0};
}

int TextLabel::heightForWidth(int width) const {
    return qRound(text_.of(text(), format(), width).height());
}

void TextLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    text_.of(text(), format(), width()).draw(painter, {0, 0});
}

} // namespace wakeloft
