#include "HelperLog.h"
#include "LidHelper.h"
#include "TerminationSignals.h"
#include "lease/LidHelperService.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace {

using namespace wakeloft;

std::optional<std::string> executablePath() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::nullopt : std::optional(path.string());
}

constexpr std::string_view afterStopOption = "--after-stop"; // for the service manager alone

int fail(const PlatformError& error) {
    logLine(LogPriority::error, error.description);
    return EXIT_FAILURE;
}

} // namespace

int main(int count, char** arguments) {
    const auto loop = SdEventMainRunLoop::create();
    if (!loop)
        return fail(loop.error());
    if (count == 2 && arguments[1] == afterStopOption)
        return LidHelper::afterCrash(**loop);
    const std::string launchedAs = count > 0 ? arguments[0] : "";
    const auto launchedPath = launchedAs.starts_with('/') ? std::optional(launchedAs) : std::nullopt;
    logLine(LogPriority::info, LidHelperService::startLine(
                                   executablePath(), launchedPath, std::nullopt,
                                   LidHelperService::Version::checked(WAKELOFT_VERSION, WAKELOFT_BUILD)));
    LidHelper* running = nullptr;
    const auto signals = TerminationSignals::watch((*loop)->event(), [&] {
        if (running != nullptr)
            running->end();
    });
    if (!signals)
        return fail(signals.error());
    LidHelper helper(**loop);
    running = &helper;
    if (const auto started = helper.start(); !started)
        return fail(started.error());
    return helper.run();
}
