#pragma once

#include "QuitConfirmationAlert.h"

class QWidget;

namespace wakeloft {

/// Shows the question as a modal window and returns when it is answered: whether the user confirmed. The main
/// loop runs on meanwhile. Return confirms, Escape and closing it cancel.
bool askToQuit(const QuitAlertContent& content);

} // namespace wakeloft
