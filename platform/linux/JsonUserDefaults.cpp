#include "JsonUserDefaults.h"

#include "AtomicFile.h"
#include "Bus.h"
#include "JsonSettings.h"
#include "XdgFolders.h"

#include <utility>

namespace wakeloft {

std::expected<std::filesystem::path, PlatformError> settingsPath() {
    auto folder = configFolder();
    return folder ? *folder / "wakeloft/settings.json" : std::move(folder);
}

JsonUserDefaults::JsonUserDefaults(std::filesystem::path path, MainRunLoop& loop)
    : path_(std::move(path)), loop_(loop) {
    read();
}

JsonUserDefaults::~JsonUserDefaults() {
    write();
}

std::optional<DefaultsValue> JsonUserDefaults::value(const std::string& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void JsonUserDefaults::set(const std::string& key, DefaultsValue value) {
    const auto [entry, isNew] = values_.try_emplace(key, value);
    if (!isNew && entry->second == value)
        return;
    entry->second = std::move(value);
    changed();
}

void JsonUserDefaults::remove(const std::string& key) {
    if (values_.erase(key) > 0)
        changed();
}

// Several changes of one turn are written once, and the click that caused them does not wait for the disk.
void JsonUserDefaults::changed() {
    isDirty_ = true;
    if (std::exchange(isWritePending_, true))
        return;
    loop_.perform(lifetime_.guard([this] {
        isWritePending_ = false;
        write();
    }));
}

void JsonUserDefaults::write() {
    if (!isDirty_)
        return;
    auto written = writeFile();
    isDirty_ = !written;
    auto trouble = written ? std::nullopt : std::optional(std::move(written.error()));
    if (std::exchange(writeTrouble_, trouble) != trouble)
        troubleChanged_.emit();
}

void JsonUserDefaults::read() {
    auto text = readWholeFile(path_);
    if (text && !*text)
        return;
    std::string why;
    if (text) {
        auto values = settingsFromJson(**text);
        if (values) {
            seen_ = **text; // anything else is not ours to replace
            values_ = std::move(*values);
            return;
        }
        why = values.error();
    } else {
        why = text.error().description;
    }
    const auto kept = keepAside();
    readTrouble_ = PlatformError{
        "settings", 0,
        "Your settings could not be read (" + why + "), so Wakeloft starts with its defaults. " +
            (kept ? "The file is kept as " + kept->string() + "." : kept.error().description)};
}

std::expected<void, PlatformError> JsonUserDefaults::writeFile() {
    const auto onDisk = readWholeFile(path_);
    // Somebody else's file, or one that could not be moved out of the way at the start, is not overwritten.
    if (!onDisk || (*onDisk && **onDisk != seen_)) {
        const auto kept = keepAside();
        if (!kept)
            return std::unexpected(kept.error());
        readTrouble_ =
            PlatformError{"settings", 0,
                          "Another program has changed Wakeloft's settings. Its version is kept as " +
                              kept->string() + "."};
        troubleChanged_.emit();
    }
    std::string text = jsonFromSettings(values_);
    auto replaced = replaceFile(path_, text);
    // A file that is there, but perhaps not for good, is ours all the same.
    if (replaced || readWholeFile(path_) == text)
        seen_ = std::move(text);
    return replaced;
}

std::expected<std::filesystem::path, PlatformError> JsonUserDefaults::keepAside() const {
    constexpr int mostTries = 1000;
    std::error_code error;
    for (int number = 1; number < mostTries; ++number) {
        auto name = path_;
        name += ".kept-" + std::to_string(number);
        if (std::filesystem::exists(std::filesystem::symlink_status(name, error)))
            continue;
        std::filesystem::rename(path_, name, error);
        if (!error || error == std::errc::no_such_file_or_directory)
            return name;
        return std::unexpected(busFailure("Cannot keep " + path_.string() + " aside", -error.value()));
    }
    return std::unexpected(
        PlatformError{"settings", 0, "Too many settings files are kept beside " + path_.string() + "."});
}

} // namespace wakeloft
