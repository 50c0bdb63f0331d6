#pragma once

#include "support/Error.h"
#include "support/Lifetime.h"
#include "support/MainRunLoop.h"
#include "support/Signal.h"
#include "support/UserDefaults.h"

#include <expected>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace wakeloft {

/// The user's settings file below $XDG_CONFIG_HOME, by default ~/.config.
std::expected<std::filesystem::path, PlatformError> settingsPath();

/// Preferences in one JSON file, replaced atomically. A change is written in a later turn of the loop, and at
/// the end. A file that cannot be understood (torn, foreign, newer) reads as defaults and is kept aside under
/// another name, and so is a file that somebody else wrote meanwhile. Main thread.
class JsonUserDefaults final : public UserDefaults {
  public:
    /// `loop` must outlive the defaults.
    JsonUserDefaults(std::filesystem::path path, MainRunLoop& loop);
    JsonUserDefaults(const JsonUserDefaults&) = delete;
    JsonUserDefaults& operator=(const JsonUserDefaults&) = delete;
    ~JsonUserDefaults() override;

    [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override;
    void set(const std::string& key, DefaultsValue value) override;
    void remove(const std::string& key) override;

    /// Writes what has changed. Nothing is lost when it fails: the file stays as it was, the values stay in
    /// memory, and the next change tries again.
    void write();

    /// A file that was not understood, or not ours, and where it went; stays for the life of this object.
    [[nodiscard]] const std::optional<PlatformError>& readTrouble() const { return readTrouble_; }
    /// Why the latest write failed; empty after one that worked.
    [[nodiscard]] const std::optional<PlatformError>& writeTrouble() const { return writeTrouble_; }
    Signal& troubleChanged() { return troubleChanged_; }

  private:
    void read();
    std::expected<void, PlatformError> writeFile();
    std::expected<std::filesystem::path, PlatformError> keepAside() const;
    void changed();

    std::filesystem::path path_;
    MainRunLoop& loop_;
    std::map<std::string, DefaultsValue> values_;
    bool isDirty_ = false;
    bool isWritePending_ = false;
    std::string seen_; ///< the file as last read or written; empty: there was none
    std::optional<PlatformError> readTrouble_;
    std::optional<PlatformError> writeTrouble_;
    Signal troubleChanged_;
    Lifetime lifetime_;
};

} // namespace wakeloft
