#pragma once

#include "SdEventMainRunLoop.h"
#include "support/ChildProcess.h"
#include "support/PrivateBus.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// A person's home, session bus and settings, and the real program in it.
class RunningApp {
  public:
    /// On a session bus of its own and without a screen, or on the desktop that the tests were given.
    enum class Place { alone, desktop };

    explicit RunningApp(Place place = Place::alone);
    RunningApp(const RunningApp&) = delete;
    RunningApp& operator=(const RunningApp&) = delete;
    ~RunningApp();

    /// Starts the program; what it says goes to `output()`.
    void start(const std::vector<std::string>& environment = {});
    /// A second program beside the running one; its exit code.
    int startAgain();
    ChildProcess& process() { return *process_; }
    /// Its name on the session bus is there. Where there is no session bus, see `says`.
    [[nodiscard]] bool isReady();
    void stop();

    /// Invokes an action of the application; the bus error's text where it is refused.
    std::string act(const std::string& action, std::optional<double> argument = {});
    /// What the tray item says to a screen reader.
    [[nodiscard]] std::string trayTitle();
    /// It says so, or soon does.
    [[nodiscard]] bool showsTitle(const std::string& title);
    /// The program has said `text`, or soon does.
    [[nodiscard]] bool says(const std::string& text) const;
    [[nodiscard]] std::string output() const;

    [[nodiscard]] std::filesystem::path settings() const { return home_ / "config/wakeloft/settings.json"; }
    void putSettings(const std::string& values) const;

    [[nodiscard]] sd_event* event() const { return loop_->event(); }
    void endSessionBus() { bus_.reset(); }
    [[nodiscard]] const std::filesystem::path& home() const { return home_; }

  private:
    [[nodiscard]] std::vector<std::string> environment(const std::vector<std::string>& more) const;

    std::unique_ptr<SdEventMainRunLoop> loop_;
    Place place_;
    std::unique_ptr<PrivateBus> bus_;
    BusPointer connection_;
    std::filesystem::path home_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace wakeloft
