#include "DesktopApplication.h"
#include "LinuxApp.h"
#include "SdEventInQt.h"
#include "SpawnedProgram.h"
#include "TerminationSignals.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace {

using namespace wakeloft;

int fail(const std::string& sentence) {
    std::fprintf(stderr, "Wakeloft: %s\n", sentence.c_str());
    return EXIT_FAILURE;
}

/// Keeps GTK, a third of a hundred megabytes, out of the process: Qt loads it to imitate these desktops.
/// KDE's own integration stays. And lets screen readers that start later see the program.
void prepareEnvironment() {
    if (qgetenv("XDG_CURRENT_DESKTOP") != "KDE")
        qputenv("XDG_CURRENT_DESKTOP", "X-Wakeloft");
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
}

bool hasDisplay() {
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    return false;
}

} // namespace

int main(int argc, char** argv) {
    auto sessionEnvironment = processEnvironment(); // before anything changes it
    const auto loop = SdEventMainRunLoop::create();
    if (!loop)
        return fail(loop.error().description);
    sd_event* event = (*loop)->event();
    LinuxApp* running = nullptr;
    bool isToQuit = false;
    const auto systemQuits = [&] {
        isToQuit = true;
        if (running != nullptr)
            running->quit(LinuxApp::QuitRequest::system);
    };
    const auto signals = TerminationSignals::watch(event, systemQuits);
    if (!signals)
        return fail(signals.error().description);

    DesktopApplication::Events events;
    events.activated = [&](const std::string& token) {
        if (running != nullptr)
            running->activate(token);
    };
    events.actionInvoked = [&](const std::string& action, const DesktopApplication::Argument& argument) {
        return running != nullptr && running->perform(action, argument);
    };
    const auto sessionBus = openSessionBus(event);
    std::unique_ptr<DesktopApplication> application; // before the display: a second start needs none
    std::string sessionBusTrouble;
    if (sessionBus) {
        auto claimed = DesktopApplication::claim(sessionBus->get(), std::move(events));
        if (claimed && claimed->first == DesktopApplication::Claim::handedOver)
            return EXIT_SUCCESS;
        if (claimed && claimed->first == DesktopApplication::Claim::otherIsSilent)
            return fail("It runs already, but does not answer.");
        if (claimed)
            application = std::move(claimed->second);
        else
            sessionBusTrouble = claimed.error().description; // and goes on as without a bus
    } else {
        sessionBusTrouble = sessionBus.error().description;
    }
    if (application == nullptr)
        static_cast<void>(fail(sessionBusTrouble));

    if (!hasDisplay())
        return fail("There is no display to show itself on: neither WAYLAND_DISPLAY nor DISPLAY is set.");
    prepareEnvironment();
    QCoreApplication::setApplicationName("wakeloft");
    QGuiApplication::setApplicationDisplayName("Wakeloft");
    QGuiApplication::setDesktopFileName(DesktopApplication::identifier);
    QApplication qt(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const SdEventInQt driver(event);

    LinuxApp app({.loop = **loop,
                  .sessionBus = application != nullptr ? sessionBus->get() : nullptr,
                  .sessionBusTrouble = sessionBusTrouble,
                  .environment = std::move(sessionEnvironment)});
    running = &app;
    if (isToQuit) // asked while it started
        app.quit(LinuxApp::QuitRequest::system);
    BusSlot sessionEnd;
    if (application != nullptr) {
        auto watched = watchBusEnd(sessionBus->get(), systemQuits);
        if (!watched)
            return fail(watched.error().description);
        sessionEnd = std::move(*watched);
    }
    const int result = QApplication::exec();
    running = nullptr;
    return result;
}
