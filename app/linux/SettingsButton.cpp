#include "SettingsButton.h"

#include "FocusRing.h"
#include "GlyphImage.h"
#include "TextBlock.h"
#include "Theme.h"

#include <QFocusEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace wakeloft {

namespace {

constexpr int gearSide = 15;
constexpr int chevronSide = 10;
constexpr int gap = 7;
constexpr int ringReach = 4;

int textWidth(int width) {
    return width - 2 * SettingsButton::sideMargin - gearSide - chevronSide - 2 * gap;
}

void paintNamed(QPainter& painter, const std::string& name, const QRect& place, const QColor& color) {
    if (const auto symbol = symbolNamed(name))
        paintImage(painter, symbolImage(*symbol, place.width()), place.topLeft(), color);
}

} // namespace

SettingsButton::SettingsButton(QWidget* parent) : QPushButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(true); // the return key presses it too
}

void SettingsButton::setContent(const SettingsMenuContent& content) {
    content_ = content;
    setAccessibleName(QString::fromStdString(content.title));
    update();
}

int SettingsButton::heightForWidth(int width) const {
    const TextBlock title(QString::fromStdString(content_.title), {font(), layoutDirection()},
                          textWidth(width));
    return std::max(static_cast<int>(SettingsMenuContent::buttonHeight), qRound(title.height()));
}

void SettingsButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto mirrored = [this](const QRect& place) {
        return QStyle::visualRect(layoutDirection(), rect(), place);
    };
    const bool isLit = underMouse() || isDown();
    const QColor ink = palette().color(isLit ? role::text : role::secondaryText);
    paintNamed(painter, content_.symbol,
               mirrored({sideMargin, (height() - gearSide) / 2, gearSide, gearSide}), ink);
    paintNamed(painter, content_.trailingSymbol,
               mirrored({width() - sideMargin - chevronSide, (height() - chevronSide) / 2, chevronSide,
                         chevronSide}),
               ink);
    const QRect place = mirrored({sideMargin + gearSide + gap, 0, textWidth(width()), height()});
    const TextBlock title(QString::fromStdString(content_.title), {font(), layoutDirection()}, place.width());
    painter.setPen(palette().color(role::text));
    title.draw(painter, QPointF(place.x(), std::floor((height() - title.height()) / 2)));
    if (hasFocus() && hasFocusRing_) {
        painter.setPen(QPen(palette().color(role::focusRing), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), ringReach, ringReach);
    }
}

void SettingsButton::focusInEvent(QFocusEvent* event) {
    hasFocusRing_ = bringsFocusRing(event->reason(), hasFocusRing_);
    QPushButton::focusInEvent(event);
}

void SettingsButton::focusOutEvent(QFocusEvent* event) {
    if (takesFocusRing(event->reason()))
        hasFocusRing_ = false;
    QPushButton::focusOutEvent(event);
}

} // namespace wakeloft
