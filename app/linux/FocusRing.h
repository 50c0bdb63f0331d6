#pragma once

#include <QApplication>

namespace wakeloft {

/// Whether a focus that came for `reason` is shown by a ring: when it came by the keyboard, or came back to
/// where a ring was.
inline bool bringsFocusRing(Qt::FocusReason reason, bool hadRing) {
    const bool cameBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason || (cameBack && hadRing);
}

/// Whether a focus that leaves for `reason` takes its ring along for good: not where it comes back by itself,
/// with its window or when a menu or popover closes.
inline bool takesFocusRing(Qt::FocusReason reason) {
    return reason != Qt::ActiveWindowFocusReason && QApplication::activePopupWidget() == nullptr;
}

} // namespace wakeloft
