#include "ProgramWatch.h"

#include <utility>

namespace wakeloft {

using Finding = LidHelperFileWatch::Finding;

ProgramWatch::ProgramWatch(sd_event* event, std::string path, std::function<void(const Finding&)> found,
                           std::function<void(const std::string&)> log)
    : path_(std::move(path)),
      found_(std::move(found)),
      log_(std::move(log)),
      changes_(
          event, path_, [this] { look(); }, [this](const PlatformError& error) { log_(error.description); }) {
}

std::expected<void, PlatformError> ProgramWatch::follow() {
    return changes_.start();
}

void ProgramWatch::start(const RunningProgram& program) {
    watch_.emplace(path_, program.hash, program.file, identityOfFile,
                   [this](const std::string& path) -> std::optional<std::string> {
                       auto hash = hashOfTrustedFile(path);
                       if (hash)
                           return std::move(*hash);
                       distrust_ = hash.error().description;
                       return std::nullopt;
                   });
    if (const auto finding = watch_->look().finding; finding != Finding::running())
        tell(finding);
}

void ProgramWatch::look() {
    if (!watch_)
        return;
    if (const auto [finding, hasChanged] = watch_->look(); hasChanged)
        tell(finding);
}

void ProgramWatch::tell(const Finding& finding) {
    const bool isDistrusted = finding == Finding::unrecognised();
    log_(finding.sentence() + (isDistrusted ? ": " + distrust_ : ""));
    found_(finding);
}

} // namespace wakeloft
