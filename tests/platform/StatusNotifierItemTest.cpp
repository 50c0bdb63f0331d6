#include "StatusNotifierItem.h"
#include "SdEventMainRunLoop.h"

#include "support/BusText.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace wakeloft {
namespace {

constexpr int patienceMs = 10'000;
constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
constexpr auto itemPath = "/StatusNotifierItem";
constexpr auto itemInterface = "org.kde.StatusNotifierItem";
constexpr auto menuPath = "/MenuBar";
constexpr auto menuInterface = "com.canonical.dbusmenu";

using Texts = std::vector<std::string>;

/// A watcher on a connection of its own; it leaves the bus with this object.
class FakeWatcher {
  public:
    enum class Answer { accept, refuse, never };

    FakeWatcher(const PrivateBus& bus, sd_event* event) : bus_(bus.connect(event)) {}

    void start() {
        static const sd_bus_vtable table[] = {
            SD_BUS_VTABLE_START(0),
            SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, 0),
            SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", readHost, 0, 0),
            SD_BUS_VTABLE_END,
        };
        ASSERT_GE(
            sd_bus_add_object_vtable(bus_.get(), nullptr, "/StatusNotifierWatcher", watcherName, table, this),
            0);
        ASSERT_GE(sd_bus_request_name(bus_.get(), watcherName, 0), 0);
    }

    void setHost(bool isThere) {
        hasHost = isThere;
        sd_bus_emit_signal(bus_.get(), "/StatusNotifierWatcher", watcherName,
                           isThere ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered",
                           nullptr);
    }

    Answer answer = Answer::accept;
    bool hasHost = true;
    bool knowsHosts = true;
    Texts registered; ///< "<sender> <argument>"

  private:
    static int registerItem(sd_bus_message* call, void* userdata, sd_bus_error* error) {
        auto& self = *static_cast<FakeWatcher*>(userdata);
        self.registered.push_back(std::string(sd_bus_message_get_sender(call)) + " " + bodyText(call));
        if (self.answer == Answer::refuse)
            return sd_bus_error_set(error, "com.example.Full", "The tray is full");
        return self.answer == Answer::never ? 1 : sd_bus_reply_method_return(call, nullptr);
    }
    static int readHost(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void* userdata,
                        sd_bus_error* error) {
        const auto& self = *static_cast<FakeWatcher*>(userdata);
        if (!self.knowsHosts)
            return sd_bus_error_set(error, SD_BUS_ERROR_UNKNOWN_PROPERTY, "No such property");
        return sd_bus_message_append(reply, "b", self.hasHost ? 1 : 0);
    }

    BusPointer bus_;
};

class StatusNotifierItemTest : public testing::Test {
  protected:
    void SetUp() override {
        sd_event* event = loop_->event();
        itemBus_ = bus_.connect(event);
        hostBus_ = bus_.connect(event);
        ASSERT_TRUE(itemBus_ && hostBus_);
        const char* name = nullptr;
        ASSERT_GE(sd_bus_get_unique_name(itemBus_.get(), &name), 0);
        itemName_ = name;
        const std::string rule = "type='signal',sender='" + itemName_ + "'";
        ASSERT_GE(sd_bus_add_match(hostBus_.get(), nullptr, rule.c_str(), recordSignal, this), 0);
        face_.iconName = "awake-symbolic";
        face_.iconThemePath = "/icons";
        face_.pixmaps = {{.width = 1, .height = 2, .bytes = {1, 2, 3, 4, 5, 6, 7, 8}}};
        face_.title = "Awake & well";
        face_.toolTipTitle = "Awake";
        face_.toolTipText = "1 < 2 & 3";
        face_.menu = {{.id = 7, .label = "Open_it"},
                      {.id = 9, .label = "", .isSeparator = true},
                      {.id = 3, .label = "Quit", .isEnabled = false}};
    }

    void makeItem() {
        // Two receivers read what they captured once more at the end, when the item may have gone.
        auto made = StatusNotifierItem::create(
            itemBus_.get(), *loop_, "wakeloft", face_,
            {.activated =
                 [this, lastX = std::make_shared<int>()](int x, int y, const std::string& token) {
                     happened("activated " + std::to_string(x) + "," + std::to_string(y) + " " + token);
                     *lastX = x;
                 },
             .menuChosen =
                 [this, lastId = std::make_shared<int>()](std::int32_t id) {
                     happened("chosen " + std::to_string(id));
                     *lastId = id;
                 },
             .hostChanged = [this](bool isHosted) { happened(isHosted ? "hosted" : "not hosted"); },
             .failed =
                 [this](const PlatformError& error) { happened(error.domain + ": " + error.description); }});
        ASSERT_TRUE(made) << made.error().description;
        item_ = *std::move(made);
    }

    void happened(const std::string& event) {
        events_.push_back(event);
        if (reaction_)
            reaction_();
    }

    bool waitFor(const Texts& events) {
        return runUntil(loop_->event(), [&] { return events_ == events; }, patienceMs);
    }

    /// Calls the item as a host does; the text of the answer, or "! <the error's name>".
    template <class... Arguments>
    std::string call(const char* path, const char* interface, const char* method, const char* types,
                     Arguments... arguments) {
        sd_bus_message* message = nullptr;
        sd_bus_message_new_method_call(hostBus_.get(), &message, itemName_.c_str(), path, interface, method);
        const BusMessage owned(message);
        EXPECT_GE(sd_bus_message_append(message, types, arguments...), 0);
        std::optional<std::string> answer;
        sd_bus_slot* slot = nullptr;
        EXPECT_GE(sd_bus_call_async(hostBus_.get(), &slot, message, recordAnswer, &answer, 0), 0);
        const BusSlot pending(slot);
        EXPECT_TRUE(runUntil(loop_->event(), [&] { return answer.has_value(); }, patienceMs)) << method;
        return answer.value_or("no answer");
    }

    std::string property(const char* path, const char* interface, const char* name) {
        return call(path, "org.freedesktop.DBus.Properties", "Get", "ss", interface, name);
    }

    std::string click(std::int32_t id) {
        return call(menuPath, menuInterface, "Event", "isvu", id, "clicked", "i", 0, 0U);
    }

    /// Everything that the item has signalled since the last time.
    Texts takeSignals() {
        call(itemPath, "org.freedesktop.DBus.Peer", "Ping", ""); // the answer comes after the signals
        return std::exchange(signals_, {});
    }

    /// Shows the face after `change`; what hosts are then told.
    Texts signalsOf(const std::function<void(TrayItemFace&)>& change) {
        change(face_);
        item_->show(face_);
        return takeSignals();
    }

    static int recordAnswer(sd_bus_message* reply, void* userdata, sd_bus_error*) {
        const sd_bus_error* error = sd_bus_message_get_error(reply);
        *static_cast<std::optional<std::string>*>(userdata) =
            error != nullptr ? std::string("! ") + error->name : bodyText(reply);
        return 0;
    }
    static int recordSignal(sd_bus_message* signal, void* userdata, sd_bus_error*) {
        const std::string body = bodyText(signal);
        static_cast<StatusNotifierItemTest*>(userdata)->signals_.push_back(sd_bus_message_get_member(signal) +
                                                                           (body.empty() ? "" : " " + body));
        return 0;
    }

    PrivateBus bus_;
    std::unique_ptr<SdEventMainRunLoop> loop_ = std::move(SdEventMainRunLoop::create().value());
    BusPointer itemBus_;
    BusPointer hostBus_;
    std::string itemName_;
    TrayItemFace face_;
    Texts events_;
    Texts signals_;
    std::function<void()> reaction_;
    std::unique_ptr<StatusNotifierItem> item_;
};

TEST_F(StatusNotifierItemTest, RegistersWithALateAndARestartedWatcher) {
    makeItem();
    ASSERT_TRUE(waitFor({"not hosted"}));

    auto watcher = std::make_unique<FakeWatcher>(bus_, loop_->event());
    watcher->start();
    ASSERT_TRUE(waitFor({"not hosted", "hosted"}));
    const Texts once = {itemName_ + " \"/StatusNotifierItem\""};
    EXPECT_EQ(watcher->registered, once);

    watcher.reset();
    ASSERT_TRUE(waitFor({"not hosted", "hosted", "not hosted"}));
    watcher = std::make_unique<FakeWatcher>(bus_, loop_->event());
    watcher->start();
    ASSERT_TRUE(waitFor({"not hosted", "hosted", "not hosted", "hosted"}));
    EXPECT_EQ(watcher->registered, once);

    // The first thing told is that it is hosted when the watcher was there before.
    item_.reset();
    events_.clear();
    makeItem();
    EXPECT_TRUE(waitFor({"hosted"}));
}

TEST_F(StatusNotifierItemTest, StartsNoWatcher) {
    const auto marker = bus_.directory() / "started";
    std::ofstream(bus_.directory() / "watcher.service")
        << "[D-BUS Service]\nName=" << watcherName << "\nExec=/bin/sh -c \"touch " << marker.string()
        << "; exit 1\"\n";
    makeItem();
    ASSERT_TRUE(waitFor({"not hosted"}));
    takeSignals();
    EXPECT_FALSE(std::filesystem::exists(marker));

    // An ordinary call would have started it.
    const std::string realName = std::exchange(itemName_, watcherName);
    EXPECT_EQ(
        call("/StatusNotifierWatcher", watcherName, "RegisterStatusNotifierItem", "s", itemPath).front(),
        '!');
    EXPECT_TRUE(std::filesystem::exists(marker));
    itemName_ = realName;
}

TEST_F(StatusNotifierItemTest, IsHostedWhileTheWatcherHasAHost) {
    FakeWatcher watcher(bus_, loop_->event());
    watcher.hasHost = false;
    watcher.start();
    makeItem();
    ASSERT_TRUE(waitFor({"not hosted"}));
    watcher.setHost(true);
    ASSERT_TRUE(waitFor({"not hosted", "hosted"}));
    watcher.setHost(false);
    EXPECT_TRUE(waitFor({"not hosted", "hosted", "not hosted"}));
}

TEST_F(StatusNotifierItemTest, IsHostedByAWatcherThatKnowsNoHosts) {
    FakeWatcher watcher(bus_, loop_->event());
    watcher.knowsHosts = false;
    watcher.start();
    makeItem();
    EXPECT_TRUE(waitFor({"hosted"}));
}

TEST_F(StatusNotifierItemTest, ReportsARefusalAndTriesTheNextWatcher) {
    auto watcher = std::make_unique<FakeWatcher>(bus_, loop_->event());
    watcher->answer = FakeWatcher::Answer::refuse;
    watcher->start();
    makeItem();
    const std::string refusal =
        "com.example.Full: The tray refused the icon: The tray is full (com.example.Full).";
    ASSERT_TRUE(waitFor({refusal, "not hosted"})) << testing::PrintToString(events_);
    // A host that this watcher gets shows the items it has, and not this one.
    watcher->setHost(true);
    for (int roundTrip = 0; roundTrip < 3; ++roundTrip)
        takeSignals();
    EXPECT_EQ(events_, (Texts{refusal, "not hosted"}));

    watcher = std::make_unique<FakeWatcher>(bus_, loop_->event());
    watcher->start();
    EXPECT_TRUE(waitFor({refusal, "not hosted", "hosted"})) << testing::PrintToString(events_);
}

TEST_F(StatusNotifierItemTest, AWatcherThatGoesWithoutAnAnswerHasRefusedNothing) {
    auto watcher = std::make_unique<FakeWatcher>(bus_, loop_->event());
    watcher->answer = FakeWatcher::Answer::never;
    watcher->start();
    makeItem();
    ASSERT_TRUE(runUntil(loop_->event(), [&] { return !watcher->registered.empty(); }, patienceMs));
    EXPECT_EQ(events_, Texts{});
    watcher.reset();
    ASSERT_TRUE(waitFor({"not hosted"})) << testing::PrintToString(events_);
    takeSignals();
    EXPECT_EQ(events_, Texts{"not hosted"});
}

TEST_F(StatusNotifierItemTest, OffersItsFaceToHosts) {
    makeItem();
    EXPECT_EQ(
        call(itemPath, "org.freedesktop.DBus.Properties", "GetAll", "s", itemInterface),
        R"([{"Category" "ApplicationStatus"} {"Id" "wakeloft"} {"Title" "Awake & well"} {"Status" "Active"} )"
        R"({"WindowId" 0} {"IconThemePath" "/icons"} {"IconName" "awake-symbolic"} )"
        R"({"IconPixmap" [(1 2 [1 2 3 4 5 6 7 8])]} {"IconAccessibleDesc" "Awake & well"} )"
        R"({"OverlayIconName" ""} {"OverlayIconPixmap" []} {"AttentionIconName" ""} )"
        R"({"AttentionIconPixmap" []} {"AttentionMovieName" ""} )"
        R"({"ToolTip" ("" [] "Awake" "1 &lt; 2 &amp; 3")} {"ItemIsMenu" 0} {"Menu" "/MenuBar"}])");
    EXPECT_EQ(call(menuPath, "org.freedesktop.DBus.Properties", "GetAll", "s", menuInterface),
              R"([{"Version" 3} {"TextDirection" "ltr"} {"Status" "normal"} {"IconThemePath" []}])");
}

TEST_F(StatusNotifierItemTest, SignalsOnlyWhatChanged) {
    makeItem();
    EXPECT_EQ(signalsOf([](auto&) {}), Texts{});
    EXPECT_EQ(signalsOf([](auto& face) { face.iconName = "asleep-symbolic"; }), Texts{"NewIcon"});
    EXPECT_EQ(property(itemPath, itemInterface, "IconName"), R"("asleep-symbolic")");
    EXPECT_EQ(signalsOf([](auto& face) { face.pixmaps.clear(); }), Texts{"NewIcon"});
    EXPECT_EQ(signalsOf([](auto& face) { face.toolTipText = "Until 15:30"; }), Texts{"NewToolTip"});
    EXPECT_EQ(signalsOf([](auto& face) { face.iconThemePath = "/others"; }),
              (Texts{R"(NewIconThemePath "/others")", "NewIcon"}));
    EXPECT_EQ(signalsOf([](auto& face) { face.title = "Asleep"; }),
              (Texts{"NewTitle",
                     R"(PropertiesChanged "org.kde.StatusNotifierItem" [{"IconAccessibleDesc" "Asleep"}] [])",
                     "NewIcon"}));
    item_.reset();
    EXPECT_EQ(takeSignals(), Texts{R"(NewStatus "Passive")"});
    EXPECT_EQ(property(itemPath, itemInterface, "Title"), "! org.freedesktop.DBus.Error.UnknownObject");
}

TEST_F(StatusNotifierItemTest, AnswersForItsMenu) {
    makeItem();
    const auto layout = [this](int parent, int depth) {
        return call(menuPath, menuInterface, "GetLayout", "iias", parent, depth, 0);
    };
    EXPECT_EQ(layout(0, -1), R"(1 (0 [{"children-display" "submenu"}] [)"
                             R"((7 [{"label" "Open__it"}] []) (9 [{"type" "separator"}] []) )"
                             R"((3 [{"label" "Quit"} {"enabled" 0}] [])]))");
    EXPECT_EQ(layout(0, 0), R"(1 (0 [{"children-display" "submenu"}] []))");
    EXPECT_EQ(layout(7, -1), R"(1 (7 [{"label" "Open__it"}] []))");
    EXPECT_EQ(call(menuPath, menuInterface, "GetLayout", "iias", 0, 1, 2, "enabled", "type"),
              R"(1 (0 [] [(7 [] []) (9 [{"type" "separator"}] []) (3 [{"enabled" 0}] [])]))");
    EXPECT_EQ(call(menuPath, menuInterface, "GetGroupProperties", "aias", 3, 3, 44, 0, 1, "label"),
              R"([(3 [{"label" "Quit"}]) (0 [])])");
    EXPECT_EQ(call(menuPath, menuInterface, "GetGroupProperties", "aias", 0, 1, "type"),
              R"([(0 []) (7 []) (9 [{"type" "separator"}]) (3 [])])");
    EXPECT_EQ(call(menuPath, menuInterface, "GetProperty", "is", 7, "enabled"), "1");
    EXPECT_EQ(call(menuPath, menuInterface, "AboutToShow", "i", 0), "0");
    EXPECT_EQ(call(menuPath, menuInterface, "AboutToShowGroup", "ai", 2, 0, 44), "[] [44]");
}

TEST_F(StatusNotifierItemTest, AnswersUnknownAndMalformedMenuCallsWithErrors) {
    makeItem();
    const std::string invalid = "! org.freedesktop.DBus.Error.InvalidArgs";
    EXPECT_EQ(call(menuPath, menuInterface, "GetLayout", "iias", 44, -1, 0), invalid);
    EXPECT_EQ(call(menuPath, menuInterface, "GetGroupProperties", "aias", 1, 44, 0), invalid);
    EXPECT_EQ(call(menuPath, menuInterface, "GetProperty", "is", 44, "label"), invalid);
    EXPECT_EQ(call(menuPath, menuInterface, "GetProperty", "is", 7, "colour"), invalid);
    EXPECT_EQ(call(menuPath, menuInterface, "AboutToShow", "i", 44), invalid);
    EXPECT_EQ(call(menuPath, menuInterface, "AboutToShowGroup", "ai", 1, 44), invalid);
    EXPECT_EQ(click(44), invalid);
    EXPECT_EQ(call(menuPath, menuInterface, "EventGroup", "a(isvu)", 1, 44, "clicked", "i", 0, 0U), invalid);
    EXPECT_EQ(call(menuPath, menuInterface, "Event", "s", "clicked"), invalid);
    EXPECT_EQ(call(itemPath, itemInterface, "Activate", "ss", "1", "2"), invalid);
}

TEST_F(StatusNotifierItemTest, SignalsMenuChangesAsPropertiesOrAsANewLayout) {
    makeItem();
    EXPECT_EQ(signalsOf([](auto& face) {
                  face.menu[0].label = "Close_it";
                  face.menu[2].isEnabled = true;
              }),
              Texts{R"(ItemsPropertiesUpdated [(7 [{"label" "Close__it"}]) (3 [{"enabled" 1}])] [])"});
    EXPECT_EQ(signalsOf([](auto& face) { std::swap(face.menu[0], face.menu[2]); }),
              Texts{"LayoutUpdated 2 0"});
    EXPECT_EQ(signalsOf([](auto& face) { face.menu[0].isSeparator = true; }), Texts{"LayoutUpdated 3 0"});
    EXPECT_EQ(signalsOf([](auto& face) { face.menu.pop_back(); }), Texts{"LayoutUpdated 4 0"});
    EXPECT_EQ(call(menuPath, menuInterface, "GetLayout", "iias", 0, -1, 1, "type"),
              R"(4 (0 [] [(3 [{"type" "separator"}] []) (9 [{"type" "separator"}] [])]))");
    EXPECT_EQ(signalsOf([](auto& face) { face.isRightToLeft = true; }),
              Texts{R"(PropertiesChanged "com.canonical.dbusmenu" [{"TextDirection" "rtl"}] [])"});
}

TEST_F(StatusNotifierItemTest, TellsPressesAndClicks) {
    makeItem();
    ASSERT_TRUE(waitFor({"not hosted"}));
    events_.clear();
    EXPECT_EQ(call(itemPath, itemInterface, "ProvideXdgActivationToken", "s", "token-1"), "");
    EXPECT_EQ(call(itemPath, itemInterface, "Activate", "ii", 12, -5), "");
    EXPECT_EQ(call(itemPath, itemInterface, "SecondaryActivate", "ii", 3, 4), ""); // the token is spent
    EXPECT_EQ(call(itemPath, itemInterface, "Scroll", "is", 120, "vertical"), "");
    EXPECT_EQ(click(7), "");
    EXPECT_EQ(click(9), ""); // a separator
    EXPECT_EQ(click(3), ""); // disabled
    EXPECT_EQ(click(0), "");
    EXPECT_EQ(call(menuPath, menuInterface, "Event", "isvu", 7, "hovered", "i", 0, 0U), "");
    EXPECT_EQ(call(menuPath, menuInterface, "EventGroup", "a(isvu)", 3, 44, "clicked", "i", 0, 0U, 7,
                   "clicked", "s", "", 0U, 7, "closed", "i", 0, 0U),
              "[44]");
    EXPECT_TRUE(waitFor({"activated 12,-5 token-1", "activated 3,4 ", "chosen 7", "chosen 7"}))
        << testing::PrintToString(events_);
}

TEST_F(StatusNotifierItemTest, AReceiverMayShowAnotherFace) {
    makeItem();
    ASSERT_TRUE(waitFor({"not hosted"}));
    takeSignals();
    events_.clear();
    reaction_ = [this] {
        face_.menu = {{.id = 8, .label = "Only this"}};
        item_->show(face_);
    };
    // The second click is on a line that the answer to the first takes away.
    EXPECT_EQ(call(menuPath, menuInterface, "EventGroup", "a(isvu)", 2, 7, "clicked", "i", 0, 0U, 7,
                   "clicked", "i", 0, 0U),
              "[]");
    EXPECT_EQ(takeSignals(), Texts{"LayoutUpdated 2 0"});
    EXPECT_EQ(events_, Texts{"chosen 7"});
}

TEST_F(StatusNotifierItemTest, AReceiverMayEndTheItem) {
    const auto endsIn = [this](const std::function<void()>& cause) {
        reaction_ = nullptr;
        makeItem();
        takeSignals();
        ASSERT_TRUE(runUntil(loop_->event(), [&] { return !events_.empty(); }, patienceMs));
        events_.clear();
        reaction_ = [this] { item_.reset(); };
        cause();
        ASSERT_TRUE(runUntil(loop_->event(), [&] { return item_ == nullptr; }, patienceMs));
        takeSignals();
        EXPECT_EQ(events_.size(), 1U) << testing::PrintToString(events_);
        events_.clear();
    };
    endsIn([&] { call(itemPath, itemInterface, "Activate", "ii", 1, 2); });
    endsIn([&] {
        call(menuPath, menuInterface, "EventGroup", "a(isvu)", 2, 7, "clicked", "i", 0, 0U, 7, "clicked", "i",
             0, 0U);
    });
    FakeWatcher watcher(bus_, loop_->event());
    watcher.answer = FakeWatcher::Answer::refuse; // both `failed` and then `hostChanged`, were it still there
    endsIn([&] { watcher.start(); });

    // At the very start, while everything is under way.
    events_.clear();
    makeItem();
    item_.reset();
    takeSignals();
    EXPECT_EQ(events_, Texts{});
}

TEST_F(StatusNotifierItemTest, AConnectionHasOneItem) {
    makeItem();
    const auto second = StatusNotifierItem::create(itemBus_.get(), *loop_, "second", face_, {});
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error().description, "The tray icon cannot be offered: File exists.");
    EXPECT_EQ(property(itemPath, itemInterface, "Id"), R"("wakeloft")");
}

} // namespace
} // namespace wakeloft
