#include "StatusNotifierItem.h"
#include "PrivateSystem.h"
#include "support/BusText.h"
#include "support/FakeService.h"

#include <optional>

namespace wakeloft {
namespace {

constexpr auto itemName = "org.example.Item";
constexpr auto itemPath = "/StatusNotifierItem";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto watcherName = "org.kde.StatusNotifierWatcher";

using Texts = std::vector<std::string>;

struct TrayItem : PrivateSystem {
    BusPointer hostBus = bus.connect(event);
    BusSlot listening;
    Texts signals;
    Texts events;
    std::function<void()> reaction = [] {};
    TrayItemFace face{.iconName = "awake-symbolic",
                      .iconThemePath = "/icons",
                      .pixmaps = {{.width = 1, .height = 2, .bytes = {1, 2, 3, 4, 5, 6, 7, 8}}},
                      .title = "Awake & well",
                      .toolTipTitle = "Awake",
                      .toolTipText = "1 < 2 & 3",
                      .menu = {{.id = 7, .label = "Open_it"},
                               {.id = 9, .label = "", .isSeparator = true},
                               {.id = 3, .label = "Quit", .isEnabled = false}}};
    std::unique_ptr<StatusNotifierItem> item;

    TrayItem() {
        sd_bus_request_name(observer.get(), itemName, 0);
        auto match =
            matchBusSignal(hostBus.get(), "type='signal',sender='org.example.Item'", [this](auto* signal) {
                signals.push_back(std::string(sd_bus_message_get_member(signal)) + " " + bodyText(signal));
            });
        listening = std::move(match.value());
        auto made = StatusNotifierItem::create(
            observer.get(), *loop, "wakeloft", face,
            {.activated =
                 [this](int x, int y, const std::string& token) {
                     happened("activated " + std::to_string(x) + "," + std::to_string(y) + " " + token);
                 },
             .menuChosen = [this](std::int32_t id) { happened("chosen " + std::to_string(id)); },
             .hostChanged = [this](bool isHosted) { happened(isHosted ? "hosted" : "not hosted"); },
             .failed = [this](const PlatformError& error) { happened(error.description); }});
        item = std::move(made.value());
        EXPECT_EQ(told(1), Texts{"not hosted"});
    }
    void happened(const std::string& what) {
        events.push_back(what);
        reaction();
    }
    /// What is told until nothing more comes.
    Texts told(std::size_t count) {
        waitFor([&] { return events.size() >= count; });
        pass(50);
        return std::exchange(events, {});
    }
    /// Calls the item as a host does; the text of the answer, or the error's name.
    template <class... Arguments>
    std::string call(const char* path, const char* interface, const char* method, const char* types,
                     Arguments... arguments) {
        std::string answer;
        const auto answered = [](sd_bus_message* reply, void* userdata, sd_bus_error*) {
            const sd_bus_error* error = sd_bus_message_get_error(reply);
            *static_cast<std::string*>(userdata) = "> " + (error != nullptr ? error->name : bodyText(reply));
            return 0;
        };
        sd_bus_call_method_async(hostBus.get(), nullptr, itemName, path, interface, method, answered, &answer,
                                 types, arguments...);
        EXPECT_TRUE(waitFor([&] { return !answer.empty(); })) << method;
        return answer.substr(2);
    }
    template <class... Arguments>
    std::string menu(const char* method, const char* types, Arguments... arguments) {
        return call("/MenuBar", "com.canonical.dbusmenu", method, types, arguments...);
    }
    std::string clickTwice(std::int32_t first, std::int32_t second) {
        return menu("EventGroup", "a(isvu)", 2, first, "clicked", "i", 0, 0U, second, "clicked", "s", "", 0U);
    }
    /// Shows the face after `change`; what hosts are then told.
    Texts signalsOf(const std::function<void(TrayItemFace&)>& change) {
        change(face);
        item->show(face);
        call(itemPath, "org.freedesktop.DBus.Peer", "Ping", ""); // the answer comes after the signals
        return std::exchange(signals, {});
    }
};

TEST_F(TrayItem, TellsHostsItsFaceAndOnlyWhatChangesOfIt) {
    EXPECT_EQ(
        call(itemPath, "org.freedesktop.DBus.Properties", "GetAll", "s", itemInterface),
        R"([{"Category" "ApplicationStatus"} {"Id" "wakeloft"} {"Title" "Awake & well"} {"Status" "Active"} )"
        R"({"WindowId" 0} {"IconThemePath" "/icons"} {"IconName" "awake-symbolic"} )"
        R"({"IconPixmap" [(1 2 [1 2 3 4 5 6 7 8])]} {"IconAccessibleDesc" "Awake & well"} )"
        R"({"OverlayIconName" ""} {"OverlayIconPixmap" []} {"AttentionIconName" ""} )"
        R"({"AttentionIconPixmap" []} {"AttentionMovieName" ""} )"
        R"({"ToolTip" ("" [] "Awake" "1 &lt; 2 &amp; 3")} {"ItemIsMenu" 0} {"Menu" "/MenuBar"}])");
    EXPECT_EQ(signalsOf([](auto&) {}), Texts{});
    EXPECT_EQ(signalsOf([](auto& next) { next.pixmaps.clear(); }), Texts{"NewIcon "});
    EXPECT_EQ(signalsOf([](auto& next) {
                  next.title = "Asleep";
                  next.toolTipText = "Until 15:30";
                  next.menu[0].label = "Close_it";
                  next.isRightToLeft = true;
              }),
              (Texts{"NewTitle ",
                     R"(PropertiesChanged "org.kde.StatusNotifierItem" [{"IconAccessibleDesc" "Asleep"}] [])",
                     "NewIcon ", "NewToolTip ", R"(ItemsPropertiesUpdated [(7 [{"label" "Close__it"}])] [])",
                     R"(PropertiesChanged "com.canonical.dbusmenu" [{"TextDirection" "rtl"}] [])"}));
    EXPECT_EQ(signalsOf([](auto& next) { std::swap(next.menu[0], next.menu[2]); }),
              Texts{"LayoutUpdated 2 0"});
}

TEST_F(TrayItem, AnswersForItsMenu) {
    EXPECT_EQ(menu("GetLayout", "iias", 0, -1, 0), R"(1 (0 [{"children-display" "submenu"}] [)"
                                                   R"((7 [{"label" "Open__it"}] []) )"
                                                   R"((9 [{"type" "separator"}] []) )"
                                                   R"((3 [{"label" "Quit"} {"enabled" 0}] [])]))");
    EXPECT_EQ(menu("GetGroupProperties", "aias", 3, 3, 44, 0, 1, "label"),
              R"([(3 [{"label" "Quit"}]) (0 [])])");
    for (const auto& answer : {menu("GetLayout", "iias", 44, -1, 0), clickTwice(44, 45),
                               menu("GetProperty", "is", 7, "colour"), menu("Event", "s", "clicked")})
        EXPECT_EQ(answer, "org.freedesktop.DBus.Error.InvalidArgs");
}

TEST_F(TrayItem, TellsPressesAndClicksAndMayChangeOrEndThere) {
    call(itemPath, itemInterface, "ProvideXdgActivationToken", "s", "token-1");
    call(itemPath, itemInterface, "Activate", "ii", 12, -5);
    call(itemPath, itemInterface, "SecondaryActivate", "ii", 3, 4); // the token is spent
    for (const int line : {7, 9, 3, 0}) // a command, a separator, a disabled one, the menu itself
        menu("Event", "isvu", line, "clicked", "i", 0, 0U);
    menu("Event", "isvu", 7, "hovered", "i", 0, 0U);
    EXPECT_EQ(clickTwice(44, 7), "[44]");
    EXPECT_EQ(told(4), (Texts{"activated 12,-5 token-1", "activated 3,4 ", "chosen 7", "chosen 7"}));
    reaction = [this] {
        face.menu = {{.id = 8, .label = "Only this"}};
        item->show(face);
    };
    EXPECT_EQ(clickTwice(7, 7), "[]"); // the answer to the first takes the line away
    EXPECT_EQ(told(1), Texts{"chosen 7"});
    reaction = [this] { item.reset(); };
    signals.clear();
    EXPECT_EQ(clickTwice(8, 8), "[]");
    EXPECT_EQ(told(1), Texts{"chosen 8"});
    EXPECT_EQ(signals, Texts{R"(NewStatus "Passive")"});
}

TEST_F(TrayItem, IsHostedWhileAWatcherHasAHost) {
    const Texts hosted{"hosted"};
    const Texts notHosted{"not hosted"};
    int hasHost = 1;
    std::optional<FakeService> watcher;
    const auto startWatcher = [&] {
        watcher.emplace(bus, event, watcherName, watcherPath, [&](auto* call, auto*) {
            if (sd_bus_message_is_method_call(call, nullptr, "Get") > 0)
                return sd_bus_reply_method_return(call, "v", "b", hasHost);
            EXPECT_EQ(bodyText(call), "\"/StatusNotifierItem\"");
            return sd_bus_reply_method_return(call, nullptr);
        });
    };
    const auto setHost = [&](int isThere, const char* change) {
        hasHost = isThere;
        sd_bus_emit_signal(watcher->bus(), watcherPath, watcherName, change, nullptr);
    };
    startWatcher();
    EXPECT_EQ(told(1), hosted);
    setHost(0, "StatusNotifierHostUnregistered");
    EXPECT_EQ(told(1), notHosted);
    setHost(1, "StatusNotifierHostRegistered");
    EXPECT_EQ(told(1), hosted);
    watcher.reset();
    EXPECT_EQ(told(1), notHosted);
    startWatcher();
    EXPECT_EQ(told(1), hosted);
}

} // namespace
} // namespace wakeloft
