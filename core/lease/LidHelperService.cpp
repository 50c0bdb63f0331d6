#include "lease/LidHelperService.h"

#include <algorithm>

namespace wakeloft {

namespace {

// Of ASCII alone, whatever the process's locale says.
bool isUpper(char character) {
    return character >= 'A' && character <= 'Z';
}
bool isDigit(char character) {
    return character >= '0' && character <= '9';
}
bool isLetter(char character) {
    return isUpper(character) || (character >= 'a' && character <= 'z');
}

bool isVersionText(std::string_view text) {
    constexpr std::size_t most = 64;
    return !text.empty() && text.size() <= most && std::ranges::all_of(text, [](char character) {
        return isLetter(character) || isDigit(character) || character == '.' || character == '-' ||
               character == '_';
    });
}

} // namespace

PropertyListValue LidHelperService::launchdPlist() {
    using Value = PropertyListValue;
    return Value{Value::Dictionary{{"Label", Value{label}},
                                   {"BundleProgram", Value{bundleProgram}},
                                   {"MachServices", Value{Value::Dictionary{{label, Value{true}}}}},
                                   {"AssociatedBundleIdentifiers", Value{Value::Array{Value{appIdentifier}}}},
                                   {"RunAtLoad", Value{true}},
                                   {"KeepAlive", Value{true}}}};
}

std::optional<std::string> LidHelperService::codeRequirement(std::string_view identifier,
                                                             std::optional<std::string_view> teamIdentifier) {
    constexpr std::size_t teamLength = 10;
    const auto isOfTeam = [](char character) { return isUpper(character) || isDigit(character); };
    if (!teamIdentifier || teamIdentifier->size() != teamLength ||
        !std::ranges::all_of(*teamIdentifier, isOfTeam))
        return std::nullopt;
    const auto isOfIdentifier = [](char character) {
        return isLetter(character) || isDigit(character) || character == '.' || character == '-';
    };
    if (identifier.empty() || !std::ranges::all_of(identifier, isOfIdentifier))
        return std::nullopt;
    std::string requirement = "anchor apple generic and identifier \"";
    requirement.append(identifier).append("\" and certificate leaf[subject.OU] = \"").append(*teamIdentifier);
    return requirement + "\"";
}

std::optional<LidHelperService::Version> LidHelperService::Version::checked(std::string version,
                                                                            std::string build) {
    if (!isVersionText(version) || !isVersionText(build))
        return std::nullopt;
    return Version{std::move(version), std::move(build)};
}

std::string LidHelperService::startLine(const std::optional<std::string>& executablePath,
                                        const std::optional<std::string>& launchedPath,
                                        const std::optional<std::string>& codeDirectoryHash,
                                        const std::optional<Version>& version) {
    std::string line = "helper starting: Wakeloft ";
    if (executablePath && version)
        line += version->version + " (" + version->build + ")";
    else
        line += "version unknown";
    line += ", cdhash " + codeDirectoryHash.value_or("unknown");
    line += ", from " + executablePath.value_or("a path that could not be read");
    if (launchedPath && launchedPath != executablePath)
        line += ", started as " + *launchedPath;
    return line;
}

} // namespace wakeloft
