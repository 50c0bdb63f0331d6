#include "NoticeRow.h"

#include "Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace {

constexpr auto symbolWidth = static_cast<int>(PanelContent::noticeSymbolWidth);
constexpr int symbolGap = 6;
constexpr int linkGap = 2;

/// An "i" or, upside down, an "!", centred at `x`.
void paintMark(QPainter& painter, qreal x, qreal dotY, qreal barTop, qreal barBottom) {
    painter.drawLine(QPointF(x, barTop), QPointF(x, barBottom));
    const QPen pen = painter.pen();
    painter.setPen(Qt::NoPen);
    painter.setBrush(pen.color());
    painter.drawEllipse(QPointF(x, dotY), 0.8, 0.8);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
}

void paintSymbol(QPainter& painter, PanelNotice::Symbol symbol, QPointF center, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.translate(center);
    if (symbol == PanelNotice::Symbol::heat) {
        QPainterPath tube; // a thermometer
        tube.moveTo(-1.8, 1.2);
        tube.lineTo(-1.8, -3.9);
        tube.arcTo(QRectF(-1.8, -5.7, 3.6, 3.6), 180, -180);
        tube.lineTo(1.8, 1.2);
        tube.arcTo(QRectF(-2.9, 0.4, 5.8, 5.8), 52, -284);
        tube.closeSubpath();
        painter.drawPath(tube);
        painter.setBrush(color);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(0, 3.3), 1.5, 1.5);
        painter.drawRect(QRectF(-0.6, -3.4, 1.2, 6));
        return;
    }
    if (symbol == PanelNotice::Symbol::information) {
        painter.drawEllipse(QPointF(0, 0), 5.4, 5.4);
        paintMark(painter, 0, -2.4, -0.4, 2.7);
        return;
    }
    QPainterPath triangle;
    triangle.moveTo(0, -5);
    triangle.lineTo(5.4, 4.6);
    triangle.lineTo(-5.4, 4.6);
    triangle.closeSubpath();
    painter.drawPath(triangle);
    paintMark(painter, 0, 2.7, -1.9, 0.8);
}

QPalette::ColorRole symbolColor(PanelNotice::Symbol symbol) {
    switch (symbol) {
    case PanelNotice::Symbol::information:
        return role::secondaryText;
    case PanelNotice::Symbol::failure:
        return role::failure;
    case PanelNotice::Symbol::warning:
    case PanelNotice::Symbol::heat:
        break;
    }
    return role::warning;
}

} // namespace

NoticeRow::NoticeRow(ActionButton::Perform perform, QWidget* parent)
    : QWidget(parent),
      text_(new TextLabel(scaledFont(fontScale::footnote), role::secondaryText, this)),
      link_(new ActionButton(ActionButton::Kind::link, std::move(perform), this)) {}

void NoticeRow::setContent(const PanelNotice& content) {
    symbol_ = content.symbol;
    hasText_ = !content.text.empty();
    hasLink_ = content.link.has_value();
    text_->setText(QString::fromStdString(content.text));
    text_->setForegroundRole(symbol_ == PanelNotice::Symbol::failure ? role::failure : role::secondaryText);
    text_->setVisible(hasText_);
    if (content.link)
        link_->setContent(*content.link);
    link_->setVisible(hasLink_);
    place();
    update();
}

int NoticeRow::textLeft() const {
    return sideMargin + (hasText_ ? symbolWidth + symbolGap : 0);
}

int NoticeRow::textWidth(int width) const {
    return width - textLeft() - sideMargin;
}

int NoticeRow::textHeight(int width) const {
    return hasText_ ? text_->heightForWidth(textWidth(width)) + (hasLink_ ? linkGap : 0) : 0;
}

/// The link's own padding reaches into the margins, so that its text lines up with the text above.
int NoticeRow::linkWidth(int width) const {
    return std::min(textWidth(width) + 2 * sideMargin, link_->naturalWidth());
}

int NoticeRow::heightForWidth(int width) const {
    return textHeight(width) + (hasLink_ ? link_->heightForWidth(linkWidth(width)) : 0);
}

void NoticeRow::place() {
    const int top = textHeight(width());
    const QRect text(textLeft(), 0, textWidth(width()), top);
    const QRect link(textLeft() - sideMargin, top, linkWidth(width()),
                     link_->heightForWidth(linkWidth(width())));
    text_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), text));
    link_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), link));
}

void NoticeRow::resizeEvent(QResizeEvent*) {
    place();
}

void NoticeRow::paintEvent(QPaintEvent*) {
    if (!hasText_)
        return;
    QPainter painter(this);
    const QFontMetricsF metrics(text_->font());
    // Optically in the middle of the first line.
    const int middle = qRound(metrics.ascent() - metrics.capHeight() / 2);
    const QRect box =
        QStyle::visualRect(layoutDirection(), rect(), QRect(sideMargin, 0, symbolWidth, height()));
    paintSymbol(painter, symbol_, QPointF(box.x() + symbolWidth / 2.0, middle),
                palette().color(symbolColor(symbol_)));
}

} // namespace wakeloft
