#include "system/RunningApp.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

namespace wakeloft {

namespace {

constexpr const char* applicationName = "com.wakeloft.Wakeloft";
constexpr const char* menuPath = "/MenuBar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr int patienceMs = 10'000;

template <class Condition>
bool within(int timeoutMs, Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

std::string textOf(const std::filesystem::path& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

} // namespace

LoginManager::LoginManager(sd_event* event) : event_(event), bus_(std::move(openSystemBus(event).value())) {}

std::vector<ListedInhibitor> LoginManager::wakeloftInhibitors() {
    auto found = listedInhibitors(bus_.get());
    EXPECT_TRUE(found);
    if (!found)
        return {};
    std::erase_if(*found, [](const ListedInhibitor& each) { return each.who != "Wakeloft"; });
    return std::move(*found);
}

std::optional<double> LoginManager::waitForCount(int count, int timeoutMs) {
    const auto start = std::chrono::steady_clock::now();
    double milliseconds = 0;
    do {
        const bool isRight = this->count() == count;
        milliseconds =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        if (isRight)
            return milliseconds;
    } while (milliseconds < timeoutMs);
    return std::nullopt;
}

void LoginManager::control(const std::string& order) {
    ChildProcess command({WAKELOFT_RIG "/control-login-manager", order});
    ASSERT_EQ(command.wait(patienceMs), 0) << order;
}

bool LoginManager::isReal() {
    const char* kind = std::getenv("WAKELOFT_RIG_LOGIN_MANAGER");
    return kind != nullptr && std::string(kind) == "real";
}

RunningApp::RunningApp(Place place)
    : loop_(std::move(SdEventMainRunLoop::create().value())),
      place_(place),
      bus_(place == Place::alone ? std::make_unique<PrivateBus>() : nullptr),
      connection_(bus_ ? bus_->connect(loop_->event()) : std::move(openSessionBus(loop_->event()).value())) {
    std::string name = (std::filesystem::temp_directory_path() / "wakeloft-home.XXXXXX").string();
    home_ = mkdtemp(name.data());
}

RunningApp::~RunningApp() {
    process_.reset();
    std::error_code error;
    std::filesystem::remove_all(home_, error);
}

std::vector<std::string> RunningApp::environment(const std::vector<std::string>& more) const {
    std::vector<std::string> all = {"HOME=" + home_.string(),
                                    "XDG_CONFIG_HOME=" + (home_ / "config").string(), "LC_ALL=C.UTF-8"};
    if (place_ == Place::alone)
        all.insert(all.end(), {"XDG_RUNTIME_DIR=" + home_.string(),
                               "DBUS_SESSION_BUS_ADDRESS=" + bus_->address(), "QT_QPA_PLATFORM=offscreen"});
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

void RunningApp::start(const std::vector<std::string>& more) {
    process_.reset();
    std::filesystem::remove(home_ / "output");
    const std::string script = "exec \"$0\" >\"" + (home_ / "output").string() + "\" 2>&1";
    process_ = std::make_unique<ChildProcess>(std::vector<std::string>{"/bin/sh", "-c", script, WAKELOFT_APP},
                                              environment(more));
}

int RunningApp::startAgain() {
    ChildProcess second({WAKELOFT_APP}, environment({}));
    return second.wait(patienceMs);
}

bool RunningApp::isReady() {
    return within(patienceMs, [this] { return !trayTitle().empty(); });
}

void RunningApp::stop() {
    process_->signal(SIGTERM);
    EXPECT_EQ(process_->wait(patienceMs), 0) << output();
}

std::string RunningApp::act(const std::string& action, std::optional<double> argument) {
    BusError error;
    const int count = argument ? 1 : 0;
    const int result = argument
                           ? sd_bus_call_method(connection_.get(), applicationName, "/com/wakeloft/Wakeloft",
                                                "org.freedesktop.Application", "ActivateAction", error.get(),
                                                nullptr, "sava{sv}", action.c_str(), count, "d", *argument, 0)
                           : sd_bus_call_method(connection_.get(), applicationName, "/com/wakeloft/Wakeloft",
                                                "org.freedesktop.Application", "ActivateAction", error.get(),
                                                nullptr, "sava{sv}", action.c_str(), count, 0);
    return result < 0 ? error.get()->message : "";
}

std::string RunningApp::trayTitle() {
    char* title = nullptr;
    BusError error;
    if (sd_bus_get_property_string(connection_.get(), applicationName, "/StatusNotifierItem",
                                   "org.kde.StatusNotifierItem", "Title", error.get(), &title) < 0)
        return "";
    std::string text(title);
    std::free(title);
    return text;
}

std::int32_t RunningApp::trayMenuLine(const std::string& label) {
    BusError error;
    sd_bus_message* reply = nullptr;
    if (sd_bus_call_method(connection_.get(), applicationName, menuPath, menuInterface, "GetLayout",
                           error.get(), &reply, "iias", 0, -1, 0) < 0)
        return 0;
    const BusMessage owned(reply);
    sd_bus_message_skip(reply, "u");
    sd_bus_message_enter_container(reply, 'r', "ia{sv}av");
    sd_bus_message_skip(reply, "ia{sv}");
    sd_bus_message_enter_container(reply, 'a', "v");
    while (sd_bus_message_enter_container(reply, 'v', "(ia{sv}av)") > 0) {
        std::int32_t id = 0;
        sd_bus_message_enter_container(reply, 'r', "ia{sv}av");
        sd_bus_message_read(reply, "i", &id);
        sd_bus_message_enter_container(reply, 'a', "{sv}");
        while (sd_bus_message_enter_container(reply, 'e', "sv") > 0) {
            const char* key = nullptr;
            const char* value = nullptr;
            sd_bus_message_read(reply, "s", &key);
            if (std::string(key) == "label" && sd_bus_message_read(reply, "v", "s", &value) > 0 &&
                label == value)
                return id;
            if (std::string(key) != "label")
                sd_bus_message_skip(reply, "v");
            sd_bus_message_exit_container(reply);
        }
        sd_bus_message_exit_container(reply);
        sd_bus_message_skip(reply, "av");
        sd_bus_message_exit_container(reply);
        sd_bus_message_exit_container(reply);
    }
    return 0;
}

bool RunningApp::chooseTrayMenuLine(std::int32_t id) {
    BusError error;
    return sd_bus_call_method(connection_.get(), applicationName, menuPath, menuInterface, "Event",
                              error.get(), nullptr, "isvu", id, "clicked", "i", 0, 0) >= 0;
}

bool RunningApp::says(const std::string& text) const {
    return within(patienceMs, [&] { return output().find(text) != std::string::npos; });
}

std::string RunningApp::output() const {
    return textOf(home_ / "output");
}

void RunningApp::putSettings(const std::string& values) const {
    std::filesystem::create_directories(settings().parent_path());
    std::ofstream(settings()) << "{\"format\": \"wakeloft-settings\", \"version\": 1, \"settings\": {"
                              << values << "}}";
}

std::string RunningApp::settingsText() const {
    return textOf(settings());
}

} // namespace wakeloft
