#include "ActionButton.h"

#include "FocusRing.h"
#include "Theme.h"

#include <QFocusEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace wakeloft {

namespace {

struct Metrics {
    int horizontalPadding, verticalPadding, minimumHeight, radius;
};

Metrics metricsOf(ActionButton::Kind kind) {
    switch (kind) {
    case ActionButton::Kind::main:
    case ActionButton::Kind::beside:
        return {16, 8, 36, 9};
    case ActionButton::Kind::small:
        return {7, 5, 28, 7};
    case ActionButton::Kind::link:
        break;
    }
    return {ActionButton::linkPadding, 4, 24, 5};
}

QFont fontOf(ActionButton::Kind kind) {
    switch (kind) {
    case ActionButton::Kind::main:
        return scaledFont(fontScale::body, QFont::DemiBold);
    case ActionButton::Kind::beside:
        return scaledFont(fontScale::body, QFont::Medium);
    case ActionButton::Kind::small:
        return scaledFont(fontScale::small, QFont::Medium);
    case ActionButton::Kind::link:
        break;
    }
    return scaledFont(fontScale::footnote, QFont::Medium);
}

} // namespace

ActionButton::ActionButton(Kind kind, Perform perform, QWidget* parent) : QPushButton(parent), kind_(kind) {
    setFont(fontOf(kind));
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(true); // the return key presses it too
    if (kind == Kind::link)
        setCursor(Qt::PointingHandCursor);
    connect(this, &QPushButton::clicked, this, [this, perform = std::move(perform)] {
        const PanelAction action = action_; // performing may change this button
        perform(action);
    });
}

void ActionButton::setContent(const PanelButton& content) {
    title_ = QString::fromStdString(content.title);
    action_ = content.action;
    // No text(): an ampersand there would become a keyboard shortcut.
    const QString spoken = content.spokenLabel.empty() ? title_ : QString::fromStdString(content.spokenLabel);
    if (accessibleName() != spoken)
        setAccessibleName(spoken);
    update();
}

int ActionButton::naturalWidth() const {
    return qRound(TextBlock::singleLineWidth(title_, font())) + 2 * metricsOf(kind_).horizontalPadding;
}

int ActionButton::heightForWidth(int width) const {
    const Metrics metrics = metricsOf(kind_);
    const TextBlock& text = titleBlock_.of(title_, {font(), layoutDirection(), kind_ != Kind::link},
                                           width - 2 * metrics.horizontalPadding);
    return std::max(metrics.minimumHeight, qRound(text.height()) + 2 * metrics.verticalPadding);
}

void ActionButton::focusInEvent(QFocusEvent* event) {
    hasFocusRing_ = bringsFocusRing(event->reason(), hasFocusRing_);
    // Without a ring it looks the same, and need not be drawn again as the panel opens.
    if (hasFocusRing_)
        QPushButton::focusInEvent(event);
}

void ActionButton::focusOutEvent(QFocusEvent* event) {
    if (takesFocusRing(event->reason()))
        hasFocusRing_ = false;
    QPushButton::focusOutEvent(event);
}

QPalette::ColorRole ActionButton::textRole() const {
    switch (kind_) {
    case Kind::main:
        return role::textOnAccent;
    case Kind::beside:
    case Kind::small:
        return role::text;
    case Kind::link:
        break;
    }
    return role::link;
}

void ActionButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (kind_ != Kind::link)
        paintShape(painter);

    QFont textFont = font();
    textFont.setUnderline(kind_ == Kind::link && (underMouse() || isDown()));
    const qreal padding = metricsOf(kind_).horizontalPadding;
    const TextBlock& text =
        titleBlock_.of(title_, {textFont, layoutDirection(), kind_ != Kind::link}, width() - 2 * padding);
    painter.setPen(palette().color(textRole()));
    text.draw(painter, {padding, std::floor((height() - text.height()) / 2)});

    if (hasFocus() && hasFocusRing_)
        paintFocusRing(painter);
}

void ActionButton::paintShape(QPainter& painter) const {
    const QColor fill = palette().color(kind_ == Kind::main ? role::accent : role::buttonFill);
    const QColor pull = palette().color(kind_ == Kind::main ? role::background : role::text);
    const qreal strength = kind_ == Kind::main ? 0.12 : 0.07;
    QColor color = fill;
    if (isDown())
        color = kind_ == Kind::main ? fill.darker(112) : mixed(fill, pull, 2 * strength);
    else if (underMouse())
        color = kind_ == Kind::main ? fill.lighter(107) : mixed(fill, pull, strength);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const int radius = metricsOf(kind_).radius;
    painter.drawRoundedRect(rect(), radius, radius);
}

void ActionButton::paintFocusRing(QPainter& painter) const {
    const bool isMain = kind_ == Kind::main;
    const qreal inset = isMain ? 3 : 1;
    const int radius = metricsOf(kind_).radius - (isMain ? 2 : 1);
    painter.setPen(QPen(palette().color(isMain ? role::textOnAccent : role::focusRing), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
}

} // namespace wakeloft
