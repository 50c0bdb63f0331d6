#include "LoginManager.h"

#include <charconv>
#include <cmath>
#include <span>
#include <string>
#include <string_view>

using namespace wakeloft::rig;

namespace {

constexpr auto program = "wakeloft-rig-login-manager";
constexpr std::chrono::minutes usualIdleTime{30};
constexpr double longestIdleSeconds = 1e6;

/// Reads --idle-action=ignore|suspend and --idle-after=SECONDS (fractions allowed).
std::expected<IdleAction, std::string> parseArguments(std::span<char*> arguments) {
    constexpr std::string_view actionOption = "--idle-action=";
    constexpr std::string_view afterOption = "--idle-after=";
    IdleAction action{.isSuspend = false, .after = usualIdleTime};
    for (const std::string_view argument : arguments) {
        if (argument == "--idle-action=suspend" || argument == "--idle-action=ignore") {
            action.isSuspend = argument.substr(actionOption.size()) == "suspend";
        } else if (argument.starts_with(afterOption)) {
            const auto text = argument.substr(afterOption.size());
            double seconds = 0;
            const auto read = std::from_chars(text.data(), text.data() + text.size(), seconds);
            const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
            const bool isInRange = seconds > 0 && seconds <= longestIdleSeconds;
            if (!isNumber || !isInRange) {
                return std::unexpected("--idle-after takes a positive number of seconds");
            }
            action.after = std::chrono::microseconds(std::llround(seconds * 1e6));
        } else {
            return std::unexpected("usage: [--idle-action=ignore|suspend] [--idle-after=SECONDS]");
        }
    }
    return action;
}

} // namespace

int main(int count, char** arguments) {
    const auto idleAction = parseArguments(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
    if (!idleAction) {
        return finish(program, std::unexpected(idleAction.error()));
    }
    const auto service = BusService::connect();
    if (!service) {
        return finish(program, std::unexpected(service.error()));
    }
    LoginManager manager(*service, *idleAction);
    if (const auto published = manager.publish(); !published) {
        return finish(program, published);
    }
    return finish(program, service->serveAs("org.freedesktop.login1"));
}
