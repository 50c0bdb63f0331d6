#pragma once

#include "OpenUriRequest.h"
#include "ProgramLocation.h"
#include "SpawnedProgram.h"

#include <map>

namespace wakeloft {

/// Hands links to the program that the desktop has for them: by xdg-open, which takes the user's default
/// without a question, or by the desktop portal, inside a sandbox or where there is no xdg-open. Main thread.
class LinkOpener {
  public:
    using Failed = std::function<void(const PlatformError&)>;

    /// `sessionBus` may be null; it and `event` must outlive the opener. `environment` is what opened
    /// programs get: that of the user's session, not what this program has made of it.
    LinkOpener(sd_event* event, sd_bus* sessionBus, std::vector<std::string> environment,
               Sandbox sandbox = currentSandbox());

    /// `failed` is told at once or later, while the opener lives, why the link could not be handed over.
    void open(const std::string& address, Failed failed);

  private:
    std::expected<void, PlatformError> openByProgram(const std::string& address, const Failed& failed);
    std::expected<void, PlatformError> askPortal(const std::string& address, const Failed& failed);

    sd_event* event_;
    sd_bus* sessionBus_;
    std::vector<std::string> environment_;
    Sandbox sandbox_;
    int opened_ = 0;
    std::map<int, std::unique_ptr<SpawnedProgram>> programs_;
    std::map<int, std::unique_ptr<OpenUriRequest>> requests_;
};

} // namespace wakeloft
