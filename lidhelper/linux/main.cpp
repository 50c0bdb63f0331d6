#include "HelperLog.h"
#include "LidHelper.h"
#include "ProgramWatch.h"
#include "TerminationSignals.h"
#include "lease/LidHelperService.h"

#include <cstdlib>
#include <malloc.h>
#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace wakeloft;

constexpr std::string_view afterStopOption = "--after-stop"; // for the service manager alone

int fail(const PlatformError& error) {
    logLine(LogPriority::error, error.description);
    return EXIT_FAILURE;
}

void logNotice(const std::string& line) {
    logLine(LogPriority::notice, line);
}

void logStart(const std::optional<std::string>& path, const std::optional<std::string>& hash,
              const std::string& launchedAs) {
    const auto launchedPath = launchedAs.starts_with('/') ? std::optional(launchedAs) : std::nullopt;
    const auto version = LidHelperService::Version::checked(WAKELOFT_VERSION, WAKELOFT_BUILD);
    logLine(LogPriority::info, LidHelperService::startLine(path, launchedPath, hash, version));
}

} // namespace

int main(int count, char** arguments) {
    // The memory of a large message goes back to the system with it, however many of them there were.
    constexpr int largeBytes = 128 * 1024;
    mallopt(M_MMAP_THRESHOLD, largeBytes);
    const auto loop = SdEventMainRunLoop::create();
    if (!loop)
        return fail(loop.error());
    if (count == 2 && arguments[1] == afterStopOption)
        return LidHelper::afterCrash(**loop);
    LidHelper* running = nullptr;
    const auto signals = TerminationSignals::watch((*loop)->event(), [&] {
        if (running != nullptr)
            running->end();
    });
    if (!signals)
        return fail(signals.error());
    LidHelper helper(**loop);
    running = &helper;
    // Without a watch over its own file the helper serves all the same.
    const auto path = RunningProgram::findPath();
    std::optional<ProgramWatch> watch;
    if (path)
        watch.emplace((*loop)->event(), *path,
                      [&](const LidHelperFileWatch::Finding& finding) { helper.programFound(finding); },
                      logNotice);
    if (const auto followed = watch ? watch->follow() : std::unexpected(path.error()); !followed)
        fail(followed.error());
    const auto started = helper.start(); // who waits for the helper does not wait for the rest of this
    const auto program = path ? RunningProgram::read(*path) : std::unexpected(path.error());
    logStart(path ? std::optional(*path) : std::nullopt,
             program ? std::optional(program->hash) : std::nullopt, count > 0 ? arguments[0] : "");
    if (!started)
        return fail(started.error());
    if (program)
        watch->start(*program);
    else
        fail(program.error());
    return helper.run();
}
