#pragma once

#include "support/AppLanguage.h"
#include "support/Localizer.h"

namespace wakeloft {

/// Texts from the app bundle's string tables, the default one and "Deepwake", in the language that the system
/// chose for the app at its start.
class BundleLocalizer final : public Localizer {
  public:
    BundleLocalizer();

    using Localizer::text;
    [[nodiscard]] std::string text(Table table, const char* key) const override;
    [[nodiscard]] bool isRightToLeft() const override;

    /// The language that the texts are really in, with the user's regional formats.
    [[nodiscard]] const AppLanguage& language() const { return language_; }

  private:
    AppLanguage language_;
};

} // namespace wakeloft
