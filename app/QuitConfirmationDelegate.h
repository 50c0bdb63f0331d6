#pragma once

#include "lid/LidAwakeController.h"
#include "status/QuitConfirmation.h"

#include <cstdint>
#include <functional>

namespace wakeloft {

/// What a request to quit leads to.
enum class TerminateReply : std::uint8_t {
    now,
    cancel,
    later ///< the program goes on until the delegate's reply
};

/// Decides on requests to quit: asks while a session is on, and waits, for at most 5 seconds, until the
/// helper has given the sleep setting back. What the system starts (log out, shut down) and a relaunch after
/// an update are never questioned. Main thread; lives as long as the app.
class QuitConfirmationDelegate {
  public:
    static constexpr Seconds longestWait = 5;

    struct Shell {
        /// Shows the alert and returns, when it has closed, whether the user confirmed. Meanwhile the main
        /// loop runs on.
        std::function<bool(const QuitConfirmation&)> ask;
        /// The request that is being decided comes from the system.
        std::function<bool()> isSystemQuit;
        /// The answer that was put off: true quits.
        std::function<void(bool)> reply;
        /// Runs the closure on the main thread, at least so many seconds from now.
        std::function<void(Seconds, std::function<void()>)> after;
    };

    explicit QuitConfirmationDelegate(Shell shell);
    QuitConfirmationDelegate(const QuitConfirmationDelegate&) = delete;
    QuitConfirmationDelegate& operator=(const QuitConfirmationDelegate&) = delete;
    ~QuitConfirmationDelegate() = default;

    /// The first controllers stay; they must outlive the delegate. Until then nothing is asked.
    void attach(AwakeController& awake, LidAwakeController& lid);

    TerminateReply applicationShouldTerminate();

    /// From now on the app quits unasked: it is opened again as its new version. The function that this
    /// returns does the same, as long as the delegate lives.
    void relaunchForUpdate();
    [[nodiscard]] std::function<void()> relaunchNotice();

    [[nodiscard]] bool isRelaunchingForUpdate() const { return isRelaunchingForUpdate_; }
    /// The alert is up.
    [[nodiscard]] bool isAsking() const { return isAsking_; }
    /// A quit waits for Deepwake to settle.
    [[nodiscard]] bool isWaitingForHelper() const { return isWaitingForHelper_; }

  private:
    TerminateReply quitForTheSystem();
    TerminateReply quitAfterAsking();
    TerminateReply endDeepwakeAndQuit();
    TerminateReply quitOnceTheHelperHasAnswered();
    void helperHasAnswered();

    Shell shell_;
    bool isRelaunchingForUpdate_ = false;
    AwakeController* awake_ = nullptr;
    LidAwakeController* lid_ = nullptr;
    bool isAsking_ = false;
    bool isWaitingForHelper_ = false;
    Lifetime lifetime_;
};

} // namespace wakeloft
