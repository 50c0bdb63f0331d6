#include "Style.h"

#include "GlyphImage.h"
#include "PanelFrame.h"
#include "Theme.h"

#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include <algorithm>

namespace wakeloft {

namespace {

constexpr int motionMilliseconds = 140;

// Of a menu, inside its frame.
constexpr int menuMargin = 6;
constexpr int itemPadding = 10;
constexpr int itemHeight = 28;
constexpr int itemRadius = 7;
constexpr int separatorHeight = 9;
constexpr int checkmarkSide = 12;
constexpr int checkmarkGap = 8;
constexpr int shortcutGap = 24;

int textLeft(const QStyleOptionMenuItem& item) {
    return itemPadding + (item.menuHasCheckableItems ? checkmarkSide + checkmarkGap : 0);
}

/// `contents`, as wide as the title, grown by what is around it; menus add the shortcut's width themselves.
QSize itemSize(const QStyleOptionMenuItem& item, const QSize& contents) {
    if (item.menuItemType == QStyleOptionMenuItem::Separator)
        return {contents.width(), separatorHeight};
    const int gap = item.text.contains(QLatin1Char('\t')) ? shortcutGap : 0;
    return {textLeft(item) + contents.width() + gap + itemPadding,
            std::max(itemHeight, item.fontMetrics.height() + itemPadding)};
}

void drawItem(QPainter& painter, const QStyleOptionMenuItem& item) {
    const auto mirrored = [&](const QRect& place) {
        return QStyle::visualRect(item.direction, item.rect, place);
    };
    const QRect row = item.rect;
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        painter.fillRect(QRect(row.left() + itemPadding, row.center().y(), row.width() - 2 * itemPadding, 1),
                         item.palette.color(role::divider));
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isEnabled = item.state.testFlag(QStyle::State_Enabled);
    const bool isChosen = isEnabled && item.state.testFlag(QStyle::State_Selected);
    if (isChosen) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(item.palette.color(role::accent));
        painter.drawRoundedRect(row, itemRadius, itemRadius);
    }
    const QColor chosenInk = item.palette.color(role::textOnAccent);
    const QColor ink = item.palette.color(isEnabled ? role::text : role::secondaryText);
    const QColor shortcutInk = item.palette.color(role::secondaryText);
    if (item.checkType != QStyleOptionMenuItem::NotCheckable && item.checked) {
        const QRect place = mirrored({row.left() + itemPadding, row.center().y() + 1 - checkmarkSide / 2,
                                      checkmarkSide, checkmarkSide});
        paintImage(painter, symbolImage(Symbol::checkmark, checkmarkSide), place.topLeft(),
                   isChosen ? chosenInk : ink);
    }
    painter.setFont(item.font);
    const QRect text = mirrored(row.adjusted(textLeft(item), 0, -itemPadding, 0));
    const auto draw = [&](const QString& words, Qt::Alignment alignment, const QColor& color) {
        painter.setPen(isChosen ? chosenInk : color);
        const auto aligned = QStyle::visualAlignment(item.direction, alignment);
        painter.drawText(
            text, static_cast<int>(aligned | Qt::AlignVCenter) | Qt::TextHideMnemonic | Qt::TextSingleLine,
            words);
    };
    draw(item.text.section(QLatin1Char('\t'), 0, 0), Qt::AlignLeft, ink);
    draw(item.text.section(QLatin1Char('\t'), 1), Qt::AlignRight, shortcutInk);
}

} // namespace

Style::Style() : QProxyStyle(QStringLiteral("fusion")) {}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returned) const {
    if (hint == SH_Widget_Animation_Duration)
        return reducesMotion_ ? 0 : motionMilliseconds;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    if (metric == PM_MenuHMargin || metric == PM_MenuVMargin)
        return menuMargin;
    if (metric == PM_MenuPanelWidth)
        return 0;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const {
    if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        item != nullptr && type == CT_MenuItem)
        return itemSize(*item, contents);
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
    if (element == PE_FrameMenu)
        return;
    if (element != PE_PanelMenu)
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    else if (widget != nullptr && widget->testAttribute(Qt::WA_TranslucentBackground))
        panelFrame::paint(*painter, option->rect, option->palette);
    else
        panelFrame::paintSquare(*painter, option->rect, option->palette);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuEmptyArea)
        return;
    if (element == CE_MenuItem && item != nullptr)
        drawItem(*painter, *item);
    else
        QProxyStyle::drawControl(element, option, painter, widget);
}

} // namespace wakeloft
