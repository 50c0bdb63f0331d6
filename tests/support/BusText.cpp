#include "support/BusText.h"

#include <cstdint>

namespace wakeloft {

namespace {

std::string remainingText(sd_bus_message* message);

std::string containerText(sd_bus_message* message, char type, const char* contents) {
    if (sd_bus_message_enter_container(message, type, contents) < 0)
        return "?";
    std::string inside = remainingText(message);
    sd_bus_message_exit_container(message);
    if (type == SD_BUS_TYPE_VARIANT)
        return inside;
    const char* brackets = type == SD_BUS_TYPE_ARRAY ? "[]" : "{}";
    if (type == SD_BUS_TYPE_STRUCT)
        brackets = "()";
    return brackets[0] + inside + brackets[1];
}

template <class Value>
std::string numberText(sd_bus_message* message, char type) {
    Value value{};
    return sd_bus_message_read_basic(message, type, &value) < 0 ? "?" : std::to_string(value);
}

std::string valueText(sd_bus_message* message, char type) {
    switch (type) {
    case SD_BUS_TYPE_BYTE:
        return numberText<std::uint8_t>(message, type);
    case SD_BUS_TYPE_UINT32:
        return numberText<std::uint32_t>(message, type);
    case SD_BUS_TYPE_INT32:
    case SD_BUS_TYPE_BOOLEAN:
        return numberText<std::int32_t>(message, type);
    case SD_BUS_TYPE_STRING:
    case SD_BUS_TYPE_OBJECT_PATH: {
        const char* text = nullptr;
        return sd_bus_message_read(message, std::string(1, type).c_str(), &text) < 0
                   ? "?"
                   : "\"" + std::string(text) + "\"";
    }
    default:
        return sd_bus_message_skip(message, nullptr) < 0 ? "?" : "...";
    }
}

std::string remainingText(sd_bus_message* message) {
    std::string text;
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(message, &type, &contents) > 0) {
        if (!text.empty())
            text += " ";
        text += contents != nullptr ? containerText(message, type, contents) : valueText(message, type);
    }
    return text;
}

} // namespace

std::string bodyText(sd_bus_message* message) {
    sd_bus_message_rewind(message, 1);
    return remainingText(message);
}

} // namespace wakeloft
