#pragma once

#include "support/AppLanguage.h"
#include "support/Localizer.h"

#include <filesystem>

namespace wakeloft {

/// Texts from gettext catalogues, a domain a table, in the user's language (LANGUAGE, LC_ALL, LC_MESSAGES,
/// LANG). Works also where the system has not generated that locale. Changes the process's message locale:
/// make it once, at the start, after the toolkit.
class GettextLocalizer final : public Localizer {
  public:
    /// `catalogues` holds LANGUAGE/LC_MESSAGES/DOMAIN.mo.
    explicit GettextLocalizer(const std::filesystem::path& catalogues);

    using Localizer::text;
    [[nodiscard]] std::string text(Table table, const char* key) const override;
    [[nodiscard]] bool isRightToLeft() const override;

    /// The language that the texts are really in, with the user's region for formats.
    [[nodiscard]] const AppLanguage& language() const { return language_; }
    [[nodiscard]] const Locale& locale() const { return language_.locale; }

  private:
    AppLanguage language_;
};

/// The web's name of a catalogue's language: "fr-CA" for "fr_CA", "zh-Hans" for "zh_CN".
std::string languageIdentifier(const std::string& catalogueLanguage);

/// Where the catalogues are for the running executable: beside it as installed, or as built.
std::filesystem::path catalogueFolder();

} // namespace wakeloft
