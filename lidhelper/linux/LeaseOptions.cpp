#include "LeaseOptions.h"

#include "LidLeaseBus.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace wakeloft {

namespace {

/// Passes over the rest of the container and takes its size off `left`; -E2BIG when that does not last.
int passOver(sd_bus_message* message, std::size_t& left) { // NOLINT(misc-no-recursion): the bus limits depth
    char type = 0;
    const char* contents = nullptr;
    int result = 0;
    while ((result = sd_bus_message_peek_type(message, &type, &contents)) > 0) {
        std::size_t size = sizeof(std::uint64_t);
        if (type == SD_BUS_TYPE_ARRAY || type == SD_BUS_TYPE_VARIANT || type == SD_BUS_TYPE_STRUCT ||
            type == SD_BUS_TYPE_DICT_ENTRY) {
            result = sd_bus_message_enter_container(message, type, contents);
            if (result >= 0)
                result = passOver(message, left);
            if (result >= 0)
                result = sd_bus_message_exit_container(message);
        } else if (type == SD_BUS_TYPE_STRING || type == SD_BUS_TYPE_OBJECT_PATH ||
                   type == SD_BUS_TYPE_SIGNATURE) {
            const char* text = nullptr;
            result = sd_bus_message_read_basic(message, type, static_cast<void*>(&text));
            size = result < 0 ? 0 : std::strlen(text) + 1;
        } else {
            std::uint64_t value = 0; // room for any of the other types
            result = sd_bus_message_read_basic(message, type, &value);
        }
        if (result < 0)
            return result;
        if (size > left)
            return -E2BIG;
        left -= size;
    }
    return result;
}

int readOption(sd_bus_message* message, std::size_t& left, LeaseOptions& options) {
    const char* name = nullptr;
    int result = sd_bus_message_read(message, "s", &name);
    if (result < 0)
        return result;
    const std::string_view key = name;
    if (key.size() >= left)
        return -E2BIG;
    left -= key.size() + 1;
    if (key != LidLeaseBus::suspendIfClosed)
        return passOver(message, left);
    int value = 0;
    result = sd_bus_message_read(message, "v", "b", &value);
    options.suspendIfClosed = value != 0;
    return result;
}

int readAll(sd_bus_message* message, std::size_t left, LeaseOptions& options) {
    int result = sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}");
    while (result >= 0 &&
           (result = sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv")) > 0) {
        result = readOption(message, left, options);
        if (result >= 0)
            result = sd_bus_message_exit_container(message);
    }
    return result < 0 ? result : sd_bus_message_exit_container(message);
}

} // namespace

int LeaseOptions::read(sd_bus_message* message, std::size_t mostBytes, LeaseOptions& options,
                       sd_bus_error* error) {
    const int result = readAll(message, mostBytes, options);
    if (result == -E2BIG)
        return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "The options are too large.");
    if (result < 0)
        return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "The options cannot be understood.");
    return 0;
}

} // namespace wakeloft
