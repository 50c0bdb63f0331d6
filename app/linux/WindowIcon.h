#pragma once

#include <QIcon>

namespace wakeloft {

/// The application's icon, drawn when something asks for it.
QIcon windowIcon();

} // namespace wakeloft
