#include "LogindSleepBlocker.h"

#include <utility>

namespace wakeloft {

LogindSleepBlocker::LogindSleepBlocker(sd_bus* sessionBus, BusConnection& systemBus, const std::string& who,
                                       const std::string& why, std::string nothing)
    : nothing_(std::move(nothing)),
      session_(sessionBus, who, why, [this] { holdChanged(); }),
      loginManager_(systemBus, who, why, [this] { holdChanged(); }) {}

std::expected<void, Error> LogindSleepBlocker::engage() {
    if (isEngaged())
        return {};
    const bool wasLost = isWanted_;
    isWanted_ = true;
    session_.take();
    if (isLoginManagerWanted())
        loginManager_.take();
    else
        loginManager_.release();
    told_ = judge();
    toldLimitation_ = limitation();
    if (told_)
        return {};
    const Error error = told_.error();
    if (!wasLost) // a lost hold goes on being taken again when its service comes back
        release();
    return std::unexpected(error);
}

// Not beside a session service that refused, as the start fails then; and not under KDE, see the header.
bool LogindSleepBlocker::isLoginManagerWanted() {
    if (session_.hold().state == Hold::State::failed)
        return false;
    return !session_.hold().isHeld() || !session_.isKdePowerManagementRunning() ||
           !loginManager_.isIdleActionIgnored();
}

void LogindSleepBlocker::release() {
    isWanted_ = false;
    session_.release();
    loginManager_.release();
}

std::optional<Error> LogindSleepBlocker::limitation() const {
    if (!isEngaged())
        return std::nullopt;
    for (const Hold* hold : {&session_.hold(), &loginManager_.hold()})
        if (hold->state == Hold::State::failed && hold->trouble)
            return *hold->trouble;
    return std::nullopt;
}

void LogindSleepBlocker::observeHold(std::function<void(std::expected<void, Error>)> changed) {
    changed_ = std::move(changed);
}

std::expected<void, PlatformError> LogindSleepBlocker::judge() const {
    const Hold& session = session_.hold();
    const Hold& loginManager = loginManager_.hold();
    const bool isSessionAsked = session.state == Hold::State::asking;
    if (session.isHeld() ||
        (loginManager.isHeld() && (session.state == Hold::State::absent || isSessionAsked)))
        return {};
    if (session.state == Hold::State::failed && session.trouble)
        return std::unexpected(*session.trouble);
    if (loginManager.state == Hold::State::failed && loginManager.trouble)
        return std::unexpected(*loginManager.trouble);
    if (isSessionAsked || loginManager.state == Hold::State::asking)
        return std::unexpected(PlatformError{"", 0, "The hold on sleep was lost and is being taken again."});
    PlatformError nothing{"", 0, nothing_};
    if (loginManager.trouble) {
        nothing.domain = loginManager.trouble->domain;
        nothing.code = loginManager.trouble->code;
        nothing.description += " " + loginManager.trouble->description;
    }
    return std::unexpected(nothing);
}

void LogindSleepBlocker::holdChanged() {
    if (!isWanted_)
        return;
    if (isLoginManagerWanted())
        loginManager_.takeSoon();
    else
        loginManager_.release();
    auto now = judge();
    auto nowLimited = limitation();
    if (now == told_ && nowLimited == toldLimitation_)
        return;
    told_ = now;
    toldLimitation_ = nowLimited;
    if (!changed_)
        return;
    const auto tell = changed_;
    if (now)
        tell({});
    else
        tell(std::unexpected(Error(now.error())));
}

} // namespace wakeloft
