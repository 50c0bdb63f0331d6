#pragma once

#include <string>
#include <string_view>

namespace wakeloft {

/// Looks up the user's words for an English key. Texts that name Deepwake have a table of their own.
class Localizer {
  public:
    enum class Table { standard, deepwake };

    virtual ~Localizer() = default;

    /// The key itself where there is no translation.
    [[nodiscard]] virtual std::string text(Table table, const char* key) const = 0;
    [[nodiscard]] virtual bool isRightToLeft() const = 0;

    [[nodiscard]] std::string text(const char* key) const { return text(Table::standard, key); }
};

/// `text` with its one placeholder "{name}" replaced by `value`.
std::string filled(std::string text, std::string_view placeholder, std::string_view value);

/// Keeps a left-to-right piece, such as a version, whole inside right-to-left text.
std::string isolatedLeftToRight(const std::string& text);

} // namespace wakeloft
