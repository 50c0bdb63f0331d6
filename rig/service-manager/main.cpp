#include "ServiceManager.h"

int main() {
    using namespace wakeloft::rig;
    constexpr auto program = "wakeloft-rig-service-manager";
    const auto service = BusService::connect();
    if (!service) {
        return finish(program, std::unexpected(service.error()));
    }
    ServiceManager manager(*service);
    if (const auto published = manager.publish(); !published) {
        return finish(program, published);
    }
    return finish(program, service->serveAs("org.freedesktop.systemd1"));
}
