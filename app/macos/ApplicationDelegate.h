#pragma once

#include "QuitConfirmationDelegate.h"

#include <functional>
#include <memory>

namespace wakeloft {

/// The system's end of the app as a whole: an app without a Dock icon, that is asked to quit and opened
/// again. Main thread; one in a process.
class ApplicationDelegate {
  public:
    struct Events {
        std::function<void()> launched; ///< the app may show itself
        std::function<void()> reopened; ///< somebody opened the running app again
        std::function<TerminateReply()> shouldTerminate;
    };

    /// Becomes the delegate of the application object, which it makes.
    explicit ApplicationDelegate(Events events);
    ApplicationDelegate(const ApplicationDelegate&) = delete;
    ApplicationDelegate& operator=(const ApplicationDelegate&) = delete;
    ~ApplicationDelegate();

    /// Has the app live until the process ends.
    void run();

    /// Asks to quit, as the user's key does. May not return.
    void terminate();
    /// The answer that `shouldTerminate` put off.
    void reply(bool mayQuit);

  private:
    struct Application;
    std::unique_ptr<Application> application_;
};

} // namespace wakeloft
