#pragma once

#include "QuitConfirmationAlert.h"

namespace wakeloft {

/// Brings the app to the front, shows the question as a modal alert and returns when it is answered: whether
/// the user confirmed. The main loop runs on meanwhile. Main thread.
bool askToQuit(const QuitAlertContent& content);

} // namespace wakeloft
