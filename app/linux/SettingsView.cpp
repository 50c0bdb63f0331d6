#include "SettingsView.h"

#include "AboutBox.h"
#include "Popover.h"

#include <QKeySequence>
#include <QTimer>

namespace wakeloft {

namespace {

constexpr int presetsWidth = 224;
constexpr int aboutWidth = 224;

QKeySequence shortcutOf(const SettingsMenuItem& item) {
    if (item.keyEquivalent.empty())
        return {};
    return QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(item.keyEquivalent).toUpper());
}

} // namespace

SettingsView::SettingsView(const SettingsSource& source, SettingsButton& button)
    : source_(source),
      button_(button),
      menuChanged_(source.menu.changed().subscribe([this] { refresh(); })),
      presetsChanged_(source.presets.changed().subscribe([this] { refresh(); })) {
    connect(&button_, &QPushButton::clicked, this, [this] { openMenu(); });
    refresh();
}

void SettingsView::refresh() {
    const auto content = source_.menu.content();
    button_.setContent(content);
    if (chooser_ != nullptr)
        chooser_->setContent(source_.presets.content());
    if (content.popup == shown_)
        return;
    shown_ = content.popup;
    if (popover_ != nullptr)
        popover_->close();
    if (shown_ && button_.isVisible())
        showPopover(*shown_);
}

// In a turn of its own, after a menu has closed: it may open a popover or a question.
void SettingsView::performLater(SettingsAction action) {
    QTimer::singleShot(0, this, [this, action] { source_.menu.perform(action); });
}

bool SettingsView::performShortcut(const QKeyEvent& event) {
    const QKeySequence pressed(event.keyCombination());
    for (const auto& item : source_.menu.content().items)
        if (!item.keyEquivalent.empty() && shortcutOf(item) == pressed) {
            performLater(item.action);
            return true;
        }
    return false;
}

void SettingsView::openMenu() {
    if (menu_ != nullptr)
        return;
    const auto content = source_.menu.content();
    menu_ = new FramedMenu(&button_);
    menu_->setAttribute(Qt::WA_DeleteOnClose);
    menu_->setMinimumFrameWidth(static_cast<int>(SettingsMenuContent::minimumMenuWidth));
    menu_->setLayoutDirection(content.isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    for (const auto& item : content.items) {
        if (item.title.empty()) {
            menu_->addSeparator();
            continue;
        }
        QString title = QString::fromStdString(item.title);
        title.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction* action = menu_->addAction(title);
        action->setShortcut(shortcutOf(item));
        action->setShortcutVisibleInContextMenu(true);
        connect(action, &QAction::triggered, this, [this, command = item.action] { performLater(command); });
    }
    const auto inset = static_cast<int>(SettingsMenuContent::menuInset);
    const int beside = inset - SettingsButton::sideMargin;
    const int x = content.isRightToLeft ? button_.width() + beside - menu_->frameWidth() : -beside;
    menu_->openAt(button_.mapToGlobal(QPoint(x, button_.height() + inset)));
}

void SettingsView::showPopover(SettingsPopupKind kind) {
    QWidget* content = nullptr;
    if (kind == SettingsPopupKind::settings) {
        chooser_ = new PresetChooser([this](AwakeDuration duration) { source_.presets.toggle(duration); });
        chooser_->setLayoutDirection(button_.layoutDirection());
        chooser_->setContent(source_.presets.content());
        content = chooser_;
    } else {
        auto* about = new AboutBox;
        about->setContent(source_.about.content());
        content = about;
    }
    popover_ = new Popover(&button_, content, kind == SettingsPopupKind::settings ? presetsWidth : aboutWidth,
                           [this, kind] {
                               if (shown_ == kind)
                                   shown_.reset();
                               source_.menu.popupClosed(kind);
                           });
    popover_->open(button_.hasFocusRing() ? Qt::TabFocusReason : Qt::PopupFocusReason);
}

} // namespace wakeloft
