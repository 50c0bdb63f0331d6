#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace wakeloft {

/// Finds out whether the file that a running helper was started from has been replaced, by an update of the
/// app for instance, so that the helper can make way for the new one. Single thread.
class LidHelperFileWatch {
  public:
    struct File {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        bool operator==(const File&) const = default;
    };

    /// What a file's status says of it. A file with the same identity is not judged twice.
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t size = 0;
        std::int64_t modifiedSeconds = 0;
        std::int64_t modifiedNanoseconds = 0;

        [[nodiscard]] File file() const { return {device, inode}; }
        bool operator==(const Identity&) const = default;
    };

    struct Finding {
        /// A genuine helper, but other code or another file than the one that runs.
        struct Replaced {
            std::string codeDirectoryHash;
            bool operator==(const Replaced&) const = default;
        };
        struct Running {
            bool operator==(const Running&) const = default;
        };
        struct Missing {
            bool operator==(const Missing&) const = default;
        };
        /// A file that is not a genuine helper.
        struct Unrecognised {
            bool operator==(const Unrecognised&) const = default;
        };
        std::variant<Replaced, Running, Missing, Unrecognised> value;

        static Finding replaced(std::string codeDirectoryHash) {
            return {Replaced{std::move(codeDirectoryHash)}};
        }
        static Finding running() { return {Running{}}; }
        static Finding missing() { return {Missing{}}; }
        static Finding unrecognised() { return {Unrecognised{}}; }

        /// As a log tells it.
        [[nodiscard]] std::string sentence() const;

        bool operator==(const Finding&) const = default;
    };

    struct Look {
        Finding finding;
        bool hasChanged = false; ///< since the look before; true for the first one
    };

    /// Nothing for a file that cannot be examined.
    using Identify = std::function<std::optional<Identity>(const std::string& path)>;
    /// The hash of a genuine helper's code, else nothing.
    using Judge = std::function<std::optional<std::string>(const std::string& path)>;

    /// `path` is where the helper is expected, `startedFrom` the file that this process was started from.
    LidHelperFileWatch(std::string path, std::string runningCodeDirectoryHash, File startedFrom,
                       Identify identify, Judge judge);

    Finding find();
    Look look();

    /// Only a helper that has been replaced makes way, and only while the sleep setting is not its to put
    /// back.
    static bool stepsAside(const Finding& finding, bool isLeaseHeld, bool isResetInDoubt);

  private:
    [[nodiscard]] Finding judged(const Identity& identity) const;

    std::string path_;
    std::string runningCodeDirectoryHash_;
    File startedFrom_;
    Identify identify_;
    Judge judge_;
    std::optional<std::pair<Identity, Finding>> judged_;
    std::optional<Finding> lastFinding_;
};

} // namespace wakeloft
