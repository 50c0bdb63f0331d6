#include "OpenUriRequest.h"

#include <algorithm>

namespace wakeloft {

namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr std::uint32_t failedOtherwise = 2; // 0: opened, 1: the user declined

/// The path on which the portal answers a request of ours, known before it is sent.
std::expected<std::string, PlatformError> requestPath(sd_bus* bus, const std::string& token) {
    const char* name = nullptr;
    const int result = sd_bus_get_unique_name(bus, &name);
    if (result < 0)
        return std::unexpected(busFailure("The desktop portal cannot be asked", result));
    std::string sender(name + 1); // without the colon
    std::ranges::replace(sender, '.', '_');
    return std::string(portalPath) + "/request/" + sender + "/" + token;
}

} // namespace

std::expected<std::unique_ptr<OpenUriRequest>, PlatformError>
OpenUriRequest::send(sd_bus* sessionBus, const std::string& address,
                     std::function<void(std::expected<void, PlatformError>)> finished) {
    static int requests = 0;
    const std::string token = "wakeloft" + std::to_string(++requests);
    const auto path = requestPath(sessionBus, token);
    if (!path)
        return std::unexpected(path.error());

    auto request = std::make_unique<OpenUriRequest>();
    auto response = matchBusSignal(
        sessionBus,
        std::string("type='signal',sender='") + portal +
            "',interface='org.freedesktop.portal.Request',member='Response',path='" + *path + "'",
        [finished](sd_bus_message* message) {
            std::uint32_t outcome = failedOtherwise;
            if (sd_bus_message_read(message, "u", &outcome) < 0 || outcome >= failedOtherwise)
                finished(std::unexpected(PlatformError{portal, 0, "The desktop has no program for it."}));
            else
                finished({});
        });
    if (!response)
        return std::unexpected(response.error());
    request->response_ = std::move(*response);

    sd_bus_message* call = nullptr;
    int result = sd_bus_message_new_method_call(sessionBus, &call, portal, portalPath,
                                                "org.freedesktop.portal.OpenURI", "OpenURI");
    const BusMessage owned(call);
    if (result >= 0)
        result = sd_bus_message_append(call, "ssa{sv}", "", address.c_str(), 1, "handle_token", "s",
                                       token.c_str());
    if (result < 0)
        return std::unexpected(busFailure("The desktop portal cannot be asked", result));
    auto reply = callBusLater(sessionBus, call, [finished](sd_bus_message* message) {
        if (const auto* error = sd_bus_message_get_error(message); error != nullptr)
            finished(std::unexpected(busFailure("The desktop portal refuses", error, 0)));
    });
    if (!reply)
        return std::unexpected(reply.error());
    request->reply_ = std::move(*reply);
    return request;
}

} // namespace wakeloft
