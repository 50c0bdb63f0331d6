#include "JsonSettings.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace wakeloft {

namespace {

using Json = nlohmann::json;

constexpr const char* format = "wakeloft-settings";
constexpr int version = 1;
constexpr double infinity = std::numeric_limits<double>::infinity();

Json fromNumber(double number) {
    if (std::isnan(number))
        return {{"number", "nan"}};
    if (std::isinf(number))
        return {{"number", number > 0 ? "infinity" : "-infinity"}};
    return number;
}

Json fromValue(const DefaultsValue& value) {
    if (const auto* flag = std::get_if<bool>(&value.value))
        return *flag;
    if (const auto* number = std::get_if<double>(&value.value))
        return fromNumber(*number);
    if (const auto* text = std::get_if<std::string>(&value.value))
        return *text;
    if (const auto* date = std::get_if<Date>(&value.value))
        return {{"date", fromNumber(date->secondsSince1970)}};
    Json list = Json::array();
    for (const auto& each : std::get<DefaultsValue::List>(value.value))
        list.push_back(fromValue(each));
    return list;
}

std::optional<double> toNumber(const Json& json) {
    if (json.is_number())
        return json.get<double>();
    if (!json.is_object() || json.size() != 1 || !json.contains("number"))
        return std::nullopt;
    const Json& name = json["number"];
    if (name == "nan")
        return std::numeric_limits<double>::quiet_NaN();
    if (name == "infinity" || name == "-infinity")
        return name == "infinity" ? infinity : -infinity;
    return std::nullopt;
}

std::optional<DefaultsValue> toValue(const Json& json, int depth = 0) {
    constexpr int deepest = 16; // far beyond any setting of ours
    if (depth > deepest)
        return std::nullopt;
    if (json.is_boolean())
        return DefaultsValue{json.get<bool>()};
    if (json.is_string())
        return DefaultsValue{json.get<std::string>()};
    if (const auto number = toNumber(json))
        return DefaultsValue{*number};
    if (json.is_object() && json.size() == 1 && json.contains("date")) {
        if (const auto seconds = toNumber(json["date"]))
            return DefaultsValue{Date{*seconds}};
        return std::nullopt;
    }
    if (!json.is_array())
        return std::nullopt;
    DefaultsValue::List list;
    for (const auto& each : json) {
        auto value = toValue(each, depth + 1);
        if (!value)
            return std::nullopt;
        list.push_back(std::move(*value));
    }
    return DefaultsValue{std::move(list)};
}

/// A text from outside may hold bytes that are no UTF-8; they must not cost the other settings.
std::string dumped(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace

std::string jsonFromSettings(const std::map<std::string, DefaultsValue>& values) {
    Json settings = Json::object();
    for (const auto& [key, value] : values)
        settings[key] = fromValue(value);
    return dumped({{"format", format}, {"version", version}, {"settings", std::move(settings)}});
}

std::expected<std::map<std::string, DefaultsValue>, std::string> settingsFromJson(const std::string& text) {
    const Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded())
        return std::unexpected("it is damaged");
    // Nothing is copied out of it before its depth is known: a copy goes as deep as the text does.
    if (!json.is_object() || !json.contains("format") || json["format"] != format)
        return std::unexpected("another program wrote it");
    if (!json.contains("version") || !json["version"].is_number_integer() || json["version"] < 1)
        return std::unexpected("it is damaged");
    if (json["version"] > version)
        return std::unexpected("a newer version of Wakeloft wrote it");
    if (!json.contains("settings") || !json["settings"].is_object())
        return std::unexpected("it is damaged");
    std::map<std::string, DefaultsValue> values;
    for (const auto& [key, each] : json["settings"].items()) {
        auto value = toValue(each);
        if (!value)
            return std::unexpected("its setting “" + key.substr(0, 100) + "” cannot be read");
        values.emplace(key, std::move(*value));
    }
    return values;
}

} // namespace wakeloft
