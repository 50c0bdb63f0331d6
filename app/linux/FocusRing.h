#pragma once

#include <Qt>

namespace wakeloft {

/// Whether a focus that came for `reason` is shown by a ring: when it came by the keyboard, or came back with
/// its window to where a ring was.
inline bool bringsFocusRing(Qt::FocusReason reason, bool hadRing) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason || (reason == Qt::ActiveWindowFocusReason && hadRing);
}

} // namespace wakeloft
