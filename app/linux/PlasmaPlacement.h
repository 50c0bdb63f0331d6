#pragma once

#include <QPoint>

#include <memory>

class QWindow;
struct org_kde_plasma_surface;

namespace wakeloft {

/// Puts a window at a place of the screen on Plasma's Wayland, whose shell alone lets a program say where.
/// Elsewhere the compositor places windows, and this does nothing. Main thread.
class PlasmaPlacement {
  public:
    /// Logical pixels. For a window that has just been shown, or moves while it is.
    void place(QWindow& window, QPoint topLeft);
    /// To be called when the window hides: it is another one to the compositor the next time.
    void forget() { surface_.reset(); }

  private:
    struct Release {
        void operator()(org_kde_plasma_surface* surface) const;
    };
    std::unique_ptr<org_kde_plasma_surface, Release> surface_;
};

} // namespace wakeloft
