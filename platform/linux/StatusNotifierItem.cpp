#include "StatusNotifierItem.h"

#include "TrayHost.h"
#include "TrayMenu.h"
#include "support/Lifetime.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace wakeloft {

namespace {

constexpr auto itemPath = "/StatusNotifierItem";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto menuPath = "/MenuBar";

/// The text of a tool tip is markup, its title and the item's title are not.
std::string escapedMarkup(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped.push_back(character);
        }
    }
    return escaped;
}

int appendPixmaps(sd_bus_message* message, const std::vector<TrayPixmap>& pixmaps) {
    int result = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "(iiay)");
    for (const TrayPixmap& pixmap : pixmaps) {
        if (result >= 0)
            result = sd_bus_message_open_container(message, SD_BUS_TYPE_STRUCT, "iiay");
        if (result >= 0)
            result = sd_bus_message_append(message, "ii", pixmap.width, pixmap.height);
        if (result >= 0)
            result = sd_bus_message_append_array(message, 'y', pixmap.bytes.data(), pixmap.bytes.size());
        if (result >= 0)
            result = sd_bus_message_close_container(message);
    }
    return result < 0 ? result : sd_bus_message_close_container(message);
}

/// A face with a torn pixmap or two lines of one id is a programming error.
void requireWellFormed(const TrayItemFace& face) {
    const bool arePixmapsWhole = std::ranges::all_of(face.pixmaps, [](const TrayPixmap& pixmap) {
        return pixmap.width > 0 && pixmap.height > 0 &&
               pixmap.bytes.size() ==
                   static_cast<std::size_t>(pixmap.width) * static_cast<std::size_t>(pixmap.height) * 4;
    });
    const bool areLinesUnique = std::ranges::all_of(face.menu, [&](const TrayMenuLine& line) {
        return line.id > trayMenuRoot && std::ranges::count(face.menu, line.id, &TrayMenuLine::id) == 1;
    });
    if (arePixmapsWhole && areLinesUnique)
        return;
    std::fputs("Wakeloft: the tray item was given a malformed face.\n", stderr);
    std::abort();
}

} // namespace

struct StatusNotifierItem::Implementation {
    static const sd_bus_vtable vtable[];

    Implementation(sd_bus* itemBus, MainRunLoop& mainLoop, std::string itemId, TrayItemFace firstFace,
                   Events itemEvents)
        : bus(itemBus),
          loop(mainLoop),
          id(std::move(itemId)),
          face(std::move(firstFace)),
          events(std::make_shared<const Events>(std::move(itemEvents))) {}

    std::optional<PlatformError> start();
    int emitDifferences(const TrayItemFace& previous) const;
    int emitSignal(const char* name) const;
    int appendProperty(sd_bus_message* message, std::string_view name) const;

    /// Tells one of `Events` in a later turn of the loop: its receiver may change or end the item, which a
    /// bus handler that is still running would not survive. The events are held, as they would end with the
    /// item.
    template <class Event, class... Values>
    void tell(Event Events::* event, const Values&... values) {
        loop.perform(lifetime.guard([held = events, event, values...] {
            const Event& receiver = (*held).*event;
            if (receiver)
                receiver(values...);
        }));
    }
    void choose(std::int32_t line) {
        // Once more what can be chosen: an event told before this one may have changed the menu.
        loop.perform(lifetime.guard([this, held = events, line] {
            if (menu->canChoose(line) && held->menuChosen)
                held->menuChosen(line);
        }));
    }

    static Implementation& self(void* userdata) { return *static_cast<Implementation*>(userdata); }
    static int activate(sd_bus_message* call, void* userdata, sd_bus_error*);
    static int scroll(sd_bus_message* call, void* userdata, sd_bus_error*);
    static int takeActivationToken(sd_bus_message* call, void* userdata, sd_bus_error*);
    static int getProperty(sd_bus*, const char*, const char*, const char* name, sd_bus_message* reply,
                           void* userdata, sd_bus_error*) {
        return self(userdata).appendProperty(reply, name);
    }

    sd_bus* bus;
    MainRunLoop& loop;
    std::string id;
    TrayItemFace face;
    std::shared_ptr<const Events> events;
    std::string activationToken;
    std::unique_ptr<TrayMenu> menu;
    std::unique_ptr<TrayHost> host;
    BusSlot object;
    Lifetime lifetime;
};

const sd_bus_vtable StatusNotifierItem::Implementation::vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Category", "s", getProperty, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Id", "s", getProperty, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Title", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("Status", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("WindowId", "i", getProperty, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("IconThemePath", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("IconName", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("IconPixmap", "a(iiay)", getProperty, 0, 0),
    SD_BUS_PROPERTY("IconAccessibleDesc", "s", getProperty, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
    SD_BUS_PROPERTY("OverlayIconName", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("OverlayIconPixmap", "a(iiay)", getProperty, 0, 0),
    SD_BUS_PROPERTY("AttentionIconName", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("AttentionIconPixmap", "a(iiay)", getProperty, 0, 0),
    SD_BUS_PROPERTY("AttentionMovieName", "s", getProperty, 0, 0),
    SD_BUS_PROPERTY("ToolTip", "(sa(iiay)ss)", getProperty, 0, 0),
    SD_BUS_PROPERTY("ItemIsMenu", "b", getProperty, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Menu", "o", getProperty, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_METHOD_WITH_NAMES("Activate", "ii", SD_BUS_PARAM(x) SD_BUS_PARAM(y), "", "", activate, 0),
    SD_BUS_METHOD_WITH_NAMES("SecondaryActivate", "ii", SD_BUS_PARAM(x) SD_BUS_PARAM(y), "", "", activate, 0),
    // Comes only from hosts that cannot show the menu themselves.
    SD_BUS_METHOD_WITH_NAMES("ContextMenu", "ii", SD_BUS_PARAM(x) SD_BUS_PARAM(y), "", "", activate, 0),
    SD_BUS_METHOD_WITH_NAMES("Scroll", "is", SD_BUS_PARAM(delta) SD_BUS_PARAM(orientation), "", "", scroll,
                             0),
    SD_BUS_METHOD_WITH_NAMES("ProvideXdgActivationToken", "s", SD_BUS_PARAM(token), "", "",
                             takeActivationToken, 0),
    SD_BUS_SIGNAL("NewTitle", "", 0),
    SD_BUS_SIGNAL("NewIcon", "", 0),
    SD_BUS_SIGNAL_WITH_NAMES("NewIconThemePath", "s", SD_BUS_PARAM(path), 0),
    SD_BUS_SIGNAL("NewToolTip", "", 0),
    SD_BUS_SIGNAL_WITH_NAMES("NewStatus", "s", SD_BUS_PARAM(status), 0),
    SD_BUS_VTABLE_END,
};

int StatusNotifierItem::Implementation::appendProperty(sd_bus_message* message, std::string_view name) const {
    const auto appendText = [&](const std::string& text) {
        return sd_bus_message_append(message, "s", text.c_str());
    };
    if (name == "Category")
        return appendText("ApplicationStatus");
    if (name == "Id")
        return appendText(id);
    if (name == "Title" || name == "IconAccessibleDesc")
        return appendText(face.title);
    if (name == "Status")
        return appendText("Active");
    if (name == "WindowId")
        return sd_bus_message_append(message, "i", 0);
    if (name == "IconThemePath")
        return appendText(face.iconThemePath);
    if (name == "IconName")
        return appendText(face.iconName);
    if (name == "IconPixmap")
        return appendPixmaps(message, face.pixmaps);
    if (name == "ToolTip")
        return sd_bus_message_append(message, "(sa(iiay)ss)", "", 0, face.toolTipTitle.c_str(),
                                     escapedMarkup(face.toolTipText).c_str());
    if (name == "ItemIsMenu")
        return sd_bus_message_append(message, "b", 0);
    if (name == "Menu")
        return sd_bus_message_append(message, "o", menuPath);
    // No overlay and no attention state.
    return name.ends_with("Pixmap") ? appendPixmaps(message, {}) : appendText("");
}

int StatusNotifierItem::Implementation::activate(sd_bus_message* call, void* userdata, sd_bus_error*) {
    Implementation& item = self(userdata);
    int x = 0;
    int y = 0;
    const int result = sd_bus_message_read(call, "ii", &x, &y);
    if (result < 0)
        return result;
    item.tell(&Events::activated, x, y, std::exchange(item.activationToken, {}));
    return sd_bus_reply_method_return(call, nullptr);
}

int StatusNotifierItem::Implementation::scroll(sd_bus_message* call, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(call, nullptr); // nothing to turn up or down
}

int StatusNotifierItem::Implementation::takeActivationToken(sd_bus_message* call, void* userdata,
                                                            sd_bus_error*) {
    const char* token = nullptr;
    const int result = sd_bus_message_read(call, "s", &token);
    if (result < 0)
        return result;
    self(userdata).activationToken = token;
    return sd_bus_reply_method_return(call, nullptr);
}

std::optional<PlatformError> StatusNotifierItem::Implementation::start() {
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_add_object_vtable(bus, &slot, itemPath, itemInterface, vtable, this);
    object.reset(slot);
    if (result < 0)
        return busFailure("The tray icon cannot be offered", result);
    auto newMenu =
        TrayMenu::create(bus, menuPath, face.menu, face.isRightToLeft,
                         {.chosen = [this](std::int32_t line) { choose(line); },
                          .failed = [this](const PlatformError& error) { tell(&Events::failed, error); }});
    if (!newMenu)
        return std::move(newMenu.error());
    menu = *std::move(newMenu);
    // Last, as a host reads the objects as soon as they are registered.
    auto newHost =
        TrayHost::create(bus, itemPath,
                         {.changed = [this](bool isHosted) { tell(&Events::hostChanged, isHosted); },
                          .failed = [this](const PlatformError& error) { tell(&Events::failed, error); }});
    if (!newHost)
        return std::move(newHost.error());
    host = *std::move(newHost);
    return std::nullopt;
}

int StatusNotifierItem::Implementation::emitSignal(const char* name) const {
    return sd_bus_emit_signal(bus, itemPath, itemInterface, name, nullptr);
}

int StatusNotifierItem::Implementation::emitDifferences(const TrayItemFace& previous) const {
    const bool isTitleNew = face.title != previous.title;
    const bool isThemePathNew = face.iconThemePath != previous.iconThemePath;
    int result = 0;
    if (isThemePathNew)
        result = sd_bus_emit_signal(bus, itemPath, itemInterface, "NewIconThemePath", "s",
                                    face.iconThemePath.c_str());
    if (result >= 0 && isTitleNew)
        result = emitSignal("NewTitle");
    if (result >= 0 && isTitleNew)
        result = sd_bus_emit_properties_changed(bus, itemPath, itemInterface, "IconAccessibleDesc", nullptr);
    // Also for the accessible description, which has no signal of its own: some hosts read it only with the
    // icon.
    if (result >= 0 && (isTitleNew || isThemePathNew || face.iconName != previous.iconName ||
                        face.pixmaps != previous.pixmaps))
        result = emitSignal("NewIcon");
    if (result >= 0 &&
        (face.toolTipTitle != previous.toolTipTitle || face.toolTipText != previous.toolTipText))
        result = emitSignal("NewToolTip");
    return result;
}

std::expected<std::unique_ptr<StatusNotifierItem>, PlatformError>
StatusNotifierItem::create(sd_bus* bus, MainRunLoop& loop, std::string id, TrayItemFace face, Events events) {
    requireWellFormed(face);
    auto implementation =
        std::make_unique<Implementation>(bus, loop, std::move(id), std::move(face), std::move(events));
    if (auto error = implementation->start())
        return std::unexpected(*std::move(error));
    return std::unique_ptr<StatusNotifierItem>(new StatusNotifierItem(std::move(implementation)));
}

StatusNotifierItem::StatusNotifierItem(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}

StatusNotifierItem::~StatusNotifierItem() {
    // A watcher forgets an item only with its connection, so hosts are asked to hide this one meanwhile.
    // There is nobody left to tell that it failed.
    sd_bus_emit_signal(implementation_->bus, itemPath, itemInterface, "NewStatus", "s", "Passive");
}

void StatusNotifierItem::show(TrayItemFace face) {
    requireWellFormed(face);
    const TrayItemFace previous = std::exchange(implementation_->face, std::move(face));
    const int result = implementation_->emitDifferences(previous);
    if (result < 0)
        implementation_->tell(&Events::failed, busFailure("The tray cannot be told of a change", result));
    implementation_->menu->show(implementation_->face.menu, implementation_->face.isRightToLeft);
}

} // namespace wakeloft
