#include "system/RunningApp.h"

#include "support/AskBus.h"
#include "support/Shell.h"
#include "support/Waiting.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

namespace wakeloft {

namespace {

constexpr const char* applicationName = "com.wakeloft.Wakeloft";
constexpr int patienceMs = 10'000;

} // namespace

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
    return comesTrue([this] { return !trayTitle().empty(); }).has_value();
}

void RunningApp::stop() {
    process_->signal(SIGTERM);
    EXPECT_EQ(process_->wait(patienceMs), 0) << output();
}

std::string RunningApp::act(const std::string& action, std::optional<double> argument) {
    const auto ask = [&](auto... arguments) {
        return askBus(connection_.get(), applicationName, "/com/wakeloft/Wakeloft",
                      "org.freedesktop.Application", "ActivateAction", "sava{sv}", action.c_str(),
                      arguments..., 0)
            .error;
    };
    return argument ? ask(1, "d", *argument) : ask(0);
}

std::string RunningApp::trayTitle() {
    return askBusText(connection_.get(), applicationName, "/StatusNotifierItem", "org.kde.StatusNotifierItem",
                      "Title");
}

bool RunningApp::showsTitle(const std::string& title) {
    constexpr double patienceForRestartsMs = 20'000;
    const bool isShown = comesTrue([&] { return trayTitle() == title; }, patienceForRestartsMs).has_value();
    EXPECT_TRUE(isShown) << trayTitle() << ": " << output();
    return isShown;
}

bool RunningApp::says(const std::string& text) const {
    return comesTrue([&] { return output().find(text) != std::string::npos; }).has_value();
}

std::string RunningApp::output() const {
    return textOf(home_ / "output");
}

void RunningApp::putSettings(const std::string& values) const {
    std::filesystem::create_directories(settings().parent_path());
    std::ofstream(settings()) << "{\"format\": \"wakeloft-settings\", \"version\": 1, \"settings\": {"
                              << values << "}}";
}

} // namespace wakeloft
