#include "LinkOpener.h"

#include <chrono>
#include <utility>

namespace wakeloft {

namespace {

using Clock = std::chrono::steady_clock;

PlatformError cannotOpen(const std::string& address, const PlatformError& why) {
    return {why.domain, why.code, "Cannot open " + address + ": " + why.description};
}

PlatformError programFailure(int exitCode) {
    constexpr int noTool = 3;
    constexpr int noSuccess = 4; // what the desktop's own tool says of a link that it has nothing for
    return {"xdg-open", exitCode,
            exitCode == noTool || exitCode == noSuccess
                ? "The desktop has no program for it."
                : "xdg-open failed with code " + std::to_string(exitCode) + "."};
}

} // namespace

LinkOpener::LinkOpener(sd_event* event, sd_bus* sessionBus, std::vector<std::string> environment,
                       Sandbox sandbox)
    : event_(event), sessionBus_(sessionBus), environment_(std::move(environment)), sandbox_(sandbox) {}

void LinkOpener::open(const std::string& address, Failed failed) {
    const Failed failedToOpen = [address, failed = std::move(failed)](const PlatformError& why) {
        failed(cannotOpen(address, why));
    };
    ++opened_;
    auto outcome =
        sandbox_ == Sandbox::none ? openByProgram(address, failedToOpen) : askPortal(address, failedToOpen);
    if (!outcome && sandbox_ == Sandbox::none && sessionBus_ != nullptr)
        outcome = askPortal(address, failedToOpen);
    if (!outcome)
        failedToOpen(outcome.error());
}

std::expected<void, PlatformError> LinkOpener::openByProgram(const std::string& address,
                                                             const Failed& failed) {
    // Without a desktop xdg-open becomes the browser: after a while its end tells of that, not of the link.
    const auto handedOver = Clock::now() + std::chrono::minutes(1);
    auto program = SpawnedProgram::start(event_, {"xdg-open", address}, environment_,
                                         [this, number = opened_, failed, handedOver](int exitCode) {
                                             const auto ended = programs_.extract(number);
                                             if (exitCode != 0 && Clock::now() < handedOver)
                                                 failed(programFailure(exitCode));
                                         });
    if (!program)
        return std::unexpected(program.error());
    programs_.emplace(opened_, std::move(*program));
    return {};
}

std::expected<void, PlatformError> LinkOpener::askPortal(const std::string& address, const Failed& failed) {
    if (sessionBus_ == nullptr)
        return std::unexpected(PlatformError{"", 0, "There is no session bus to ask the desktop on."});
    auto request = OpenUriRequest::send(
        sessionBus_, address,
        [this, number = opened_, failed](const std::expected<void, PlatformError>& outcome) {
            const auto finished = requests_.extract(number);
            if (!outcome)
                failed(outcome.error());
        });
    if (!request)
        return std::unexpected(request.error());
    requests_.emplace(opened_, std::move(*request));
    return {};
}

} // namespace wakeloft
