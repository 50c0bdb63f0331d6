#pragma once

#include "preferences/LoginItem.h"

#include <memory>

namespace wakeloft {

/// The app as a login item of its user.
class SMAppServiceLoginItem final : public LoginItem {
  public:
    /// For the running app.
    SMAppServiceLoginItem();
    SMAppServiceLoginItem(const SMAppServiceLoginItem&) = delete;
    SMAppServiceLoginItem& operator=(const SMAppServiceLoginItem&) = delete;
    ~SMAppServiceLoginItem() override;

    [[nodiscard]] LoginItemState state() const override;
    /// It lies in a folder for applications, the user's or the computer's, however deep.
    [[nodiscard]] bool isAtStableLocation() const override;
    std::expected<void, Error> registerItem() override;
    std::expected<void, Error> unregisterItem() override;

    /// Where the user allows what waits for approval: the helper too.
    static void openSystemSettings();

  private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace wakeloft
