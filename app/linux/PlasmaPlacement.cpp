#include "PlasmaPlacement.h"

#include "X11Desktop.h"

#include <QGuiApplication>
#include <QWindow>

#include <plasma-shell.h>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

#include <cstdint>
#include <cstring>

namespace wakeloft {

namespace {

/// The toolkit's own window system, where it can be asked: what tells its handles may differ between
/// releases. Nor where the toolkit scales by itself, in units that the shell does not know.
QPlatformNativeInterface* toolkit() {
    const bool isAsBuilt = std::strcmp(qVersion(), QT_VERSION_STR) == 0;
    const bool isScaled = !qEnvironmentVariableIsEmpty("QT_SCALE_FACTOR") ||
                          !qEnvironmentVariableIsEmpty("QT_SCREEN_SCALE_FACTORS");
    return isWayland() && isAsBuilt && !isScaled ? QGuiApplication::platformNativeInterface() : nullptr;
}

void bindShell(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t offered) {
    constexpr std::uint32_t version = 2; // since when windows may stay out of the task bar
    if (std::strcmp(interface, org_kde_plasma_shell_interface.name) == 0 && offered >= version)
        *static_cast<org_kde_plasma_shell**>(data) = static_cast<org_kde_plasma_shell*>(
            wl_registry_bind(registry, name, &org_kde_plasma_shell_interface, version));
}

void ignoreRemoval(void*, wl_registry*, std::uint32_t) {}

/// Null where the compositor has none. Asked on a queue of its own, as the answer is waited for.
org_kde_plasma_shell* findShell() {
    auto* display = static_cast<wl_display*>(toolkit()->nativeResourceForIntegration("wl_display"));
    if (display == nullptr)
        return nullptr;
    wl_event_queue* queue = wl_display_create_queue(display);
    auto* wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), queue);
    wl_registry* registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    static constexpr wl_registry_listener listener{bindShell, ignoreRemoval};
    org_kde_plasma_shell* shell = nullptr;
    wl_registry_add_listener(registry, &listener, static_cast<void*>(&shell));
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    if (shell != nullptr) // it has no events; the queue ends here
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(shell), nullptr);
    wl_event_queue_destroy(queue);
    return shell;
}

} // namespace

void PlasmaPlacement::Release::operator()(org_kde_plasma_surface* surface) const {
    org_kde_plasma_surface_destroy(surface);
}

void PlasmaPlacement::place(QWindow& window, QPoint topLeft) {
    if (toolkit() == nullptr)
        return;
    static org_kde_plasma_shell* const shell = findShell(); // may be bound but once
    if (shell == nullptr)
        return;
    if (!surface_) {
        auto* surface = static_cast<wl_surface*>(toolkit()->nativeResourceForWindow("surface", &window));
        if (surface == nullptr)
            return;
        surface_.reset(org_kde_plasma_shell_get_surface(shell, surface));
        org_kde_plasma_surface_set_skip_taskbar(surface_.get(), 1);
    }
    org_kde_plasma_surface_set_position(surface_.get(), topLeft.x(), topLeft.y());
}

} // namespace wakeloft
