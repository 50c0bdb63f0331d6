#include "DesktopEntry.h"

#include <algorithm>

namespace wakeloft {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto start = text.find_first_not_of(blanks);
    return start == std::string_view::npos ? std::string_view()
                                           : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

bool isComment(std::string_view line) {
    return trimmed(line).empty() || trimmed(line).starts_with('#');
}

bool isHeader(std::string_view line) {
    return trimmed(line).starts_with('[');
}

/// The key before the "="; empty for a comment.
std::string_view keyOf(std::string_view line) {
    return isComment(line) || !line.contains('=') ? std::string_view()
                                                  : trimmed(line.substr(0, line.find('=')));
}

} // namespace

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text) {
    DesktopEntry entry;
    entry.lines_.clear();
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        entry.lines_.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    const auto first = std::ranges::find_if_not(entry.lines_, isComment);
    if (first == entry.lines_.end() || trimmed(*first) != header)
        return std::nullopt;
    return entry;
}

std::string DesktopEntry::text() const {
    std::string text;
    for (const auto& line : lines_)
        text.append(line).append("\n");
    return text;
}

std::optional<std::string> DesktopEntry::value(std::string_view key) const {
    std::optional<std::string> value;
    int headers = 0;
    for (const auto& line : lines_) {
        headers += isHeader(line) ? 1 : 0;
        if (headers > 1)
            break;
        if (keyOf(line) == key)
            value = trimmed(std::string_view(line).substr(line.find('=') + 1));
    }
    return value;
}

bool DesktopEntry::isTrue(std::string_view key) const {
    const auto found = value(key);
    return found == "true" || found == "1";
}

bool DesktopEntry::isFalse(std::string_view key) const {
    const auto found = value(key);
    return found == "false" || found == "0";
}

void DesktopEntry::set(std::string_view key, std::string_view value) {
    auto line = std::string(key).append("=").append(value);
    const auto isIt = [&](const auto& each) { return keyOf(each) == key; };
    const auto end = endOfGroup();
    const auto found = std::find_if(lines_.begin(), end, isIt);
    if (found == end) {
        lines_.insert(found, std::move(line));
        return;
    }
    *found = std::move(line);
    lines_.erase(std::remove_if(found + 1, end, isIt), end);
}

void DesktopEntry::remove(std::string_view key) {
    const auto end = endOfGroup(); // before lines are moved away, and look blank
    lines_.erase(std::remove_if(lines_.begin(), end, [&](const auto& each) { return keyOf(each) == key; }),
                 end);
}

std::optional<std::string> DesktopEntry::execWord(const std::filesystem::path& program) {
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+,:@";
    std::string path = program.string();
    if (path.empty() || path.find_first_of("%\\\n") != std::string::npos)
        return std::nullopt;
    if (path.find_first_not_of(plain) == std::string::npos)
        return path;
    std::string word;
    for (const char each : path) {
        if (std::string_view("\"`$").contains(each))
            word += R"(\\)"; // a backslash, which every value writes as two
        word += each;
    }
    return "\"" + word + "\"";
}

/// Where a key of the entry's own group may be added: before the blank lines that set the next group off.
std::vector<std::string>::iterator DesktopEntry::endOfGroup() {
    const auto start = std::ranges::find_if(lines_, isHeader);
    auto end = std::find_if(start + 1, lines_.end(), isHeader);
    while (end != start + 1 && trimmed(*(end - 1)).empty())
        --end;
    return end;
}

} // namespace wakeloft
