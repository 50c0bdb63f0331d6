#include "Tray.h"

#include "TrayGlyph.h"
#include "status/TrayIcon.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace wakeloft {

namespace {

constexpr const char* itemId = "wakeloft";
constexpr std::int32_t firstSeparatorId = 1'000'000;
constexpr Seconds patienceForTray = 5; // at login the tray often comes after the programs
constexpr Seconds patienceForHost = 1; // many trays are of both kinds, and become the new one last

} // namespace

Tray::Tray(sd_bus* sessionBus, MainRunLoop& loop, AwakePanel& panel, Events events)
    : loop_(loop), panel_(panel), events_(std::move(events)), content_(panel.trayContent()) {
    StatusNotifierItem::Events itemEvents;
    itemEvents.activated = events_.pressed;
    itemEvents.menuChosen = [this](std::int32_t id) { chosen(id); };
    itemEvents.hostChanged = [this](bool isHosted) { hostChanged(isHosted); };
    itemEvents.failed = [this](const PlatformError& error) { failed(error); };
    auto item = StatusNotifierItem::create(sessionBus, loop, itemId, face(content_), std::move(itemEvents));
    if (item) {
        item_ = std::move(*item);
        return;
    }
    failed(item.error());
    loop_.perform(lifetime_.guard([this] { events_.isMissing(); }));
}

void Tray::refresh() {
    auto content = panel_.trayContent();
    if (item_ == nullptr || content == content_)
        return;
    content_ = std::move(content);
    auto shown = face(content_);
    if (oldTray_ != nullptr)
        oldTray_->show(content_.icon, shown);
    item_->show(std::move(shown));
}

void Tray::failed(const PlatformError& error) {
    std::fprintf(stderr, "Wakeloft: %s\n", error.description.c_str());
    panel_.report(AwakePanel::Trouble::tray, error.description);
}

void Tray::hostChanged(bool isHosted) {
    isHosted_ = isHosted;
    oldTray_.reset();
    shownChanged();
    if (!isHosted)
        loop_.performAfter(patienceForHost, lifetime_.guard([this, change = shownChanges_] {
            if (change == shownChanges_)
                lookForOldTray();
        }));
}

void Tray::lookForOldTray() {
    XEmbedTray::Events events;
    events.icon.pressed = [this](int x, int y) { events_.pressed(x, y, ""); };
    events.icon.menuChosen = [this](std::int32_t id) { chosen(id); };
    events.changed = [this] { shownChanged(); };
    oldTray_ = std::make_unique<XEmbedTray>(content_.icon, face(content_), std::move(events));
}

void Tray::shownChanged() {
    const auto change = ++shownChanges_;
    if (isShown()) {
        panel_.report(AwakePanel::Trouble::trayHost, "");
        panel_.report(AwakePanel::Trouble::tray, "");
        return;
    }
    loop_.performAfter(patienceForTray, lifetime_.guard([this, change] {
        if (change == shownChanges_)
            events_.isMissing();
    }));
}

void Tray::chosen(std::int32_t id) {
    const auto index = static_cast<std::size_t>(id - 1);
    if (index < menuActions_.size())
        panel_.perform(menuActions_[index]);
}

TrayItemFace Tray::face(const TrayContent& content) {
    TrayItemFace face;
    const auto direction =
        content.isRightToLeft ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
    face.iconThemePath = trayIconFolder();
    face.iconName = face.iconThemePath.empty() ? "" : trayIconName(content.icon, direction);
    face.pixmaps = trayPixmaps(content.icon, direction);
    face.title = content.spokenLabel;
    face.toolTipTitle = content.toolTipTitle;
    face.toolTipText = content.toolTipText;
    face.isRightToLeft = content.isRightToLeft;
    std::int32_t separators = 0;
    for (const auto& entry : content.menu) {
        const bool isSeparator = entry.title.empty();
        face.menu.push_back({.id = isSeparator ? firstSeparatorId + separators++ : idOf(entry.action),
                             .label = entry.title,
                             .isSeparator = isSeparator,
                             .isEnabled = entry.isEnabled,
                             .isChecked = entry.isChecked});
    }
    return face;
}

// The same for the life of the program: a host's click may come after the menu that it saw has changed.
std::int32_t Tray::idOf(const PanelAction& action) {
    auto found = std::ranges::find(menuActions_, action);
    if (found == menuActions_.end())
        found = menuActions_.insert(found, action);
    return static_cast<std::int32_t>(found - menuActions_.begin()) + 1;
}

} // namespace wakeloft
