#include "NoticeRow.h"

#include "GlyphImage.h"
#include "Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace {

constexpr auto symbolWidth = static_cast<int>(PanelContent::noticeSymbolWidth);
constexpr int symbolOverhang = 1; // at each side, where the picture is empty
constexpr int symbolSide = symbolWidth + 2 * symbolOverhang;
constexpr int symbolGap = 6;
constexpr int linkGap = 2;

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
    const qreal top = metrics.ascent() - (metrics.capHeight() + symbolSide) / 2;
    const QRect box =
        QStyle::visualRect(layoutDirection(), rect(), QRect(sideMargin, 0, symbolWidth, height()));
    if (const auto symbol = symbolNamed(symbolName(symbol_)))
        paintImage(painter, symbolImage(*symbol, symbolSide), QPointF(box.x() - symbolOverhang, top),
                   palette().color(symbolColor(symbol_)));
}

} // namespace wakeloft
