#include "StarRow.h"

#include "FocusRing.h"
#include "GlyphImage.h"
#include "TextBlock.h"
#include "Theme.h"

#include <QFocusEvent>
#include <QPainter>
#include <QStyle>

#include <cmath>
#include <utility>

namespace wakeloft {

namespace {

constexpr int starSide = 15;
constexpr int starGap = 8;
constexpr int padding = 6; // around the row, for its hover and focus
constexpr int radius = 6;

} // namespace

StarRow::StarRow(Toggle toggle, QWidget* parent) : QCheckBox(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    const auto pressed = [this, toggle = std::move(toggle)] { toggle(content_.duration); };
    connect(this, &QCheckBox::clicked, this, pressed);
    connect(this, &QCheckBox::toggled, this, [this, pressed](bool isChecked) {
        if (isChecked == content_.isStarred)
            return;
        setChecked(content_.isStarred); // a screen reader turns it without a click
        pressed();
    });
}

void StarRow::setContent(const PresetRow& content) {
    content_ = content;
    setAccessibleName(QString::fromStdString(content.spokenLabel));
    setChecked(content.isStarred);
    setEnabled(content.isEnabled);
    update();
}

void StarRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEnabled() && underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(role::buttonFill));
        painter.drawRoundedRect(rect(), radius, radius);
    }
    if (hasFocus() && hasFocusRing_) {
        painter.setPen(QPen(palette().color(role::focusRing), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    }
    const auto mirrored = [this](const QRect& place) {
        return QStyle::visualRect(layoutDirection(), rect(), place);
    };
    const QRect star = mirrored({padding, (height() - starSide) / 2, starSide, starSide});
    const auto symbol = symbolNamed(content_.symbol).value_or(Symbol::star);
    paintImage(painter, symbolImage(symbol, starSide), star.topLeft(),
               palette().color(content_.isStarred ? role::star : role::secondaryText));
    const int textLeft = padding + starSide + starGap;
    const QRect place = mirrored({textLeft, 0, width() - textLeft - padding, height()});
    const TextBlock label(QString::fromStdString(content_.label),
                          {scaledFont(fontScale::body), layoutDirection()}, place.width());
    painter.setPen(palette().color(isEnabled() ? role::text : role::secondaryText));
    label.draw(painter, QPointF(place.x(), std::floor((height() - label.height()) / 2)));
}

void StarRow::focusInEvent(QFocusEvent* event) {
    hasFocusRing_ = bringsFocusRing(event->reason(), hasFocusRing_);
    QCheckBox::focusInEvent(event);
}

void StarRow::focusOutEvent(QFocusEvent* event) {
    if (takesFocusRing(event->reason()))
        hasFocusRing_ = false;
    QCheckBox::focusOutEvent(event);
}

} // namespace wakeloft
