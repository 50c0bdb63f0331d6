#pragma once

#include "Bus.h"

#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace wakeloft {

/// The application on the session bus (org.freedesktop.Application): one a session, opened and told what to
/// do by launchers, scripts and a second start of itself. Main thread.
class DesktopApplication {
  public:
    static constexpr const char* identifier = "com.wakeloft.Wakeloft";
    static constexpr const char* objectPath = "/com/wakeloft/Wakeloft";

    /// An action's argument: none, a number, or something else that no action of ours takes.
    using Argument = std::variant<std::monostate, double, std::string>;

    struct Events {
        /// Somebody starts the program again. The token lets the window come to the front.
        std::function<void(std::string activationToken)> activated;
        /// False for an action, or an argument, that is not known; the caller gets an error.
        std::function<bool(const std::string& action, const Argument& argument)> actionInvoked;
    };

    enum class Claim { first, handedOver, otherIsSilent };

    /// Claims the name. Where another instance has it, asks that one to open its panel and waits for its
    /// answer. `bus` must outlive the application.
    static std::expected<std::pair<Claim, std::unique_ptr<DesktopApplication>>, PlatformError>
    claim(sd_bus* bus, Events events);
    ~DesktopApplication();
    DesktopApplication(const DesktopApplication&) = delete;
    DesktopApplication& operator=(const DesktopApplication&) = delete;

  private:
    explicit DesktopApplication(sd_bus* bus, Events events);
    static int activate(sd_bus_message* message, void* userdata, sd_bus_error* error);
    static int open(sd_bus_message* message, void* userdata, sd_bus_error* error);
    static int activateAction(sd_bus_message* message, void* userdata, sd_bus_error* error);

    sd_bus* bus_;
    Events events_;
    BusSlot object_;
};

} // namespace wakeloft
