#include "PanelHeader.h"

#include "GlyphImage.h"
#include "Theme.h"
#include "status/AwakeGlyph.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace wakeloft {

namespace {

constexpr int glyphSize = 32; // of the box that either glyph stands in the middle of
constexpr double glyphPoints = 23;
constexpr int glyphGap = 10;

TextBlock::Format titleFormat(const QWidget& widget) {
    return {scaledFont(fontScale::title, QFont::Bold), widget.layoutDirection()};
}

TextBlock::Format statusFormat(const QWidget& widget) {
    return {scaledFont(fontScale::body, QFont::Medium), widget.layoutDirection(), false, true};
}

} // namespace

PanelHeader::PanelHeader(QWidget* parent) : QLabel(parent) {}

void PanelHeader::setContent(const PanelContent& content) {
    icon_ = content.icon;
    title_ = QString::fromStdString(content.title);
    statusLine_ = QString::fromStdString(content.statusLine);
    const QString spoken = QString::fromStdString(content.spokenStatus);
    if (accessibleName() != spoken)
        setAccessibleName(spoken);
    update();
}

int PanelHeader::heightForWidth(int width) const {
    const int textWidth = width - glyphSize - glyphGap;
    const TextBlock& title = titleBlock_.of(title_, titleFormat(*this), textWidth);
    const TextBlock& status = statusBlock_.of(statusLine_, statusFormat(*this), textWidth);
    return std::max(glyphSize, qRound(title.height() + status.height()));
}

void PanelHeader::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor color = palette().color(role::text);
    const int textWidth = width() - glyphSize - glyphGap;
    const TextBlock& title = titleBlock_.of(title_, titleFormat(*this), textWidth);
    const TextBlock& status = statusBlock_.of(statusLine_, statusFormat(*this), textWidth);

    const TemplateImage glyph = icon_.glyph().image(glyphPoints);
    const QRectF box = QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, glyphSize, height()));
    paintImage(painter, glyph, box.center() - QPointF(glyph.width, glyph.height) / 2, color);

    const QRect text =
        QStyle::visualRect(layoutDirection(), rect(), QRect(glyphSize + glyphGap, 0, textWidth, height()));
    const qreal top = std::floor((height() - title.height() - status.height()) / 2);
    painter.setPen(color);
    title.draw(painter, QPointF(text.x(), top));
    status.draw(painter, QPointF(text.x(), top + title.height()));
}

} // namespace wakeloft
