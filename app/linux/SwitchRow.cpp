#include "SwitchRow.h"

#include "FocusRing.h"
#include "Theme.h"

#include <QFocusEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

namespace wakeloft {

namespace {

constexpr int trackWidth = 34;
constexpr int trackHeight = 20;
constexpr int switchGap = 12;
constexpr int footnoteGap = 3;
constexpr qreal knobInset = 2.5;

int textWidth(int width) {
    return width - 2 * SwitchRow::ringMargin - trackWidth - switchGap;
}

} // namespace

SwitchRow::SwitchRow(Perform perform, QWidget* parent)
    : QCheckBox(parent), knob_(*this, 0, [this](qreal) { update(); }) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    const auto pressed = [this, perform = std::move(perform)] {
        const PanelAction action = content_.action; // performing may change this row
        perform(action);
    };
    connect(this, &QCheckBox::clicked, this, pressed);
    connect(this, &QCheckBox::toggled, this, [this, pressed](bool isChecked) {
        if (isChecked == content_.isOn)
            return;
        setChecked(content_.isOn); // a screen reader turns it without a click
        pressed();
    });
}

void SwitchRow::setContent(const PanelSwitch& content) {
    content_ = content;
    title_ = QString::fromStdString(content.title);
    footnote_ = QString::fromStdString(content.footnote);
    // No text(): an ampersand there would become a keyboard shortcut.
    setAccessibleName(title_);
    setAccessibleDescription(footnote_);
    if (isChecked() != content.isOn) {
        setChecked(content.isOn);
        knob_.moveTo(content.isOn ? 1 : 0);
    }
    setEnabled(content.isEnabled);
    update();
}

int SwitchRow::titleHeight(int width) const {
    const TextBlock& title =
        titleBlock_.of(title_, {scaledFont(fontScale::body), layoutDirection()}, textWidth(width));
    return std::max(trackHeight, qRound(title.height()));
}

int SwitchRow::heightForWidth(int width) const {
    int height = titleHeight(width) + 2 * ringMargin;
    if (!footnote_.isEmpty()) {
        const TextBlock& footnote = footnoteBlock_.of(
            footnote_, {scaledFont(fontScale::footnote), layoutDirection()}, width - 2 * ringMargin);
        height += footnoteGap + qRound(footnote.height());
    }
    return height;
}

bool SwitchRow::hitButton(const QPoint& point) const {
    return rect().contains(point) && point.y() < ringMargin + titleHeight(width());
}

void SwitchRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect inside = rect().adjusted(ringMargin, ringMargin, -ringMargin, -ringMargin);
    const QRect row(inside.topLeft(), QSize(inside.width(), titleHeight(width())));
    const auto mirrored = [&](const QRect& place) {
        return QStyle::visualRect(layoutDirection(), inside, place);
    };
    const TextBlock& title =
        titleBlock_.of(title_, {scaledFont(fontScale::body), layoutDirection()}, textWidth(width()));
    const QRect text = mirrored({row.x(), row.y(), textWidth(width()), row.height()});
    painter.setPen(palette().color(isEnabled() ? role::text : role::secondaryText));
    title.draw(painter, QPointF(text.x(), row.y() + std::floor((row.height() - title.height()) / 2)));
    const int trackTop = row.y() + (row.height() - trackHeight) / 2;
    paintSwitch(painter, mirrored({row.right() + 1 - trackWidth, trackTop, trackWidth, trackHeight}));
    if (footnote_.isEmpty())
        return;
    painter.setPen(palette().color(role::secondaryText));
    footnoteBlock_.of(footnote_, {scaledFont(fontScale::footnote), layoutDirection()}, inside.width())
        .draw(painter, QPointF(inside.x(), row.bottom() + 1 + footnoteGap));
}

void SwitchRow::paintSwitch(QPainter& painter, const QRectF& track) const {
    const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
    QColor fill = mixed(palette().color(role::switchOff), palette().color(role::accent), knob_.value());
    if (isEnabled() && (isDown() || underMouse()))
        fill = fill.darker(isDown() ? 112 : 105);
    if (hasFocus() && hasFocusRing_) {
        painter.setPen(QPen(palette().color(role::focusRing), 2));
        painter.setBrush(Qt::NoBrush);
        const QRectF ring = track.adjusted(-3, -3, 3, 3);
        painter.drawRoundedRect(ring, ring.height() / 2, ring.height() / 2);
    }
    painter.setOpacity(isEnabled() ? 1 : 0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const qreal size = track.height() - 2 * knobInset;
    const qreal way = track.width() - 2 * knobInset - size;
    const qreal x = track.left() + knobInset + way * (isRightToLeft ? 1 - knob_.value() : knob_.value());
    painter.setBrush(Qt::white);
    painter.drawEllipse(QRectF(x, track.top() + knobInset, size, size));
    painter.setOpacity(1);
}

void SwitchRow::focusInEvent(QFocusEvent* event) {
    hasFocusRing_ = bringsFocusRing(event->reason(), hasFocusRing_);
    QCheckBox::focusInEvent(event);
}

void SwitchRow::focusOutEvent(QFocusEvent* event) {
    if (takesFocusRing(event->reason()))
        hasFocusRing_ = false;
    QCheckBox::focusOutEvent(event);
}

} // namespace wakeloft
