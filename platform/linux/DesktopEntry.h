#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wakeloft {

/// The file that tells a desktop how to start a program. What is not asked for stays as it was written:
/// comments, other keys, their order.
class DesktopEntry {
  public:
    /// Nothing where a desktop would not take the text for an entry.
    static std::optional<DesktopEntry> parse(std::string_view text);
    /// One with nothing in it.
    DesktopEntry() : lines_{header} {}

    [[nodiscard]] std::string text() const;
    /// As it is written, escapes included; of a repeated key the last.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;
    [[nodiscard]] bool isTrue(std::string_view key) const;
    [[nodiscard]] bool isFalse(std::string_view key) const;
    void set(std::string_view key, std::string_view value);
    void remove(std::string_view key);

    /// The program as a word of the key "Exec". Nothing for a path that desktops do not agree on how to read:
    /// one with a percent sign, a backslash or a line's end.
    static std::optional<std::string> execWord(const std::filesystem::path& program);

  private:
    static constexpr const char* header = "[Desktop Entry]";

    std::vector<std::string>::iterator endOfGroup();

    std::vector<std::string> lines_;
};

} // namespace wakeloft
