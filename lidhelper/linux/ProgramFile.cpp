#include "ProgramFile.h"

#include "Bus.h"
#include "Descriptor.h"

#include <fcntl.h>
#include <gcrypt.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string_view>

namespace wakeloft {

namespace {

constexpr const char* ownProgram = "/proc/self/exe";
constexpr std::size_t hashLength = 64; // of SHA-256, in hexadecimal

std::unexpected<PlatformError> unreadable(const std::string& path) {
    const int error = errno;
    return std::unexpected(busFailure(path + " cannot be read", -error));
}

std::unexpected<PlatformError> untrusted(const std::string& path, std::string_view why) {
    return std::unexpected(PlatformError{"", 0, path + std::string(why)});
}

/// Writes the hash of the file's content to `output`, in lower-case hexadecimal; whether all went well.
bool writeHash(int file, int output) {
    constexpr int kind = GCRY_MD_SHA256;
    gcry_check_version(nullptr); // the library asks to be begun with this
    gcry_control(GCRYCTL_DISABLE_SECMEM);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED);
    gcry_md_hd_t hash = nullptr;
    if (gcry_md_open(&hash, kind, 0) != 0)
        return false;
    std::array<char, 16384> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): read() fills it
    ssize_t size = 0;
    while ((size = read(file, buffer.data(), buffer.size())) > 0)
        gcry_md_write(hash, buffer.data(), static_cast<std::size_t>(size));
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    const unsigned char* bytes = gcry_md_read(hash, kind);
    for (unsigned index = 0; index < gcry_md_get_algo_dlen(kind); ++index)
        text.append({digits[bytes[index] / digits.size()], digits[bytes[index] % digits.size()]});
    return size == 0 && write(output, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

/// In a process of its own: what the library needs in memory, a third of all that the helper has, ends with
/// it.
std::expected<std::string, PlatformError> hashOf(int file, const std::string& path) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) < 0)
        return unreadable(path);
    const Descriptor input(ends[0]);
    Descriptor output(ends[1]);
    const pid_t child = fork();
    if (child == 0)
        _exit(writeHash(file, output.get()) ? EXIT_SUCCESS : EXIT_FAILURE);
    if (child < 0)
        return unreadable(path);
    output.closeNow();
    std::string hash(hashLength, '\0');
    const bool isWhole = read(input.get(), hash.data(), hash.size()) == static_cast<ssize_t>(hash.size());
    int status = 0;
    const bool hasEnded = waitpid(child, &status, 0) == child;
    if (!isWhole || !hasEnded || status != 0)
        return untrusted(path, " cannot be hashed.");
    return hash;
}

/// The words end the sentence that the path begins.
std::optional<std::string_view> reasonToDistrust(const struct stat& status) {
    if (status.st_uid != 0 && status.st_uid != geteuid())
        return " belongs to another user.";
    if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        return " can be written by others.";
    return std::nullopt;
}

} // namespace

std::expected<std::string, PlatformError> RunningProgram::findPath() {
    std::array<char, PATH_MAX> name; // NOLINT(cppcoreguidelines-pro-type-member-init): readlink() fills it
    const ssize_t length = readlink(ownProgram, name.data(), name.size());
    if (length < 0)
        return unreadable(ownProgram);
    std::string path(name.data(), static_cast<std::size_t>(length));
    constexpr std::string_view mark = " (deleted)"; // the kernel's, once the file is gone from there
    if (path.ends_with(mark) && access(path.c_str(), F_OK) < 0)
        path.erase(path.size() - mark.size());
    return path;
}

std::expected<RunningProgram, PlatformError> RunningProgram::read(const std::string& path) {
    const Descriptor file(open(ownProgram, O_RDONLY | O_CLOEXEC));
    struct stat status{};
    if (file.get() < 0 || fstat(file.get(), &status) < 0)
        return unreadable(path);
    auto hash = hashOf(file.get(), path);
    if (!hash)
        return std::unexpected(std::move(hash.error()));
    return RunningProgram{path, {status.st_dev, status.st_ino}, std::move(*hash)};
}

std::optional<LidHelperFileWatch::Identity> identityOfFile(const std::string& path) {
    struct stat status{};
    if (lstat(path.c_str(), &status) < 0)
        return std::nullopt;
    return LidHelperFileWatch::Identity{.device = status.st_dev,
                                        .inode = status.st_ino,
                                        .size = status.st_size,
                                        .modifiedSeconds = status.st_mtim.tv_sec,
                                        .modifiedNanoseconds = status.st_mtim.tv_nsec};
}

std::expected<std::string, PlatformError> hashOfTrustedFile(const std::string& path) {
    const auto slash = path.rfind('/');
    const auto folderPath = path.substr(0, std::max<std::size_t>(slash, 1));
    const Descriptor folder(open(folderPath.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status{};
    if (folder.get() < 0 || fstat(folder.get(), &status) < 0)
        return unreadable(folderPath);
    if (const auto reason = reasonToDistrust(status))
        return untrusted(folderPath, *reason);
    // Not waiting, for what is no regular file.
    const Descriptor file(
        openat(folder.get(), path.c_str() + slash + 1, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (file.get() < 0 || fstat(file.get(), &status) < 0)
        return unreadable(path);
    if (!S_ISREG(status.st_mode))
        return untrusted(path, " is no regular file.");
    constexpr off_t most = 64 << 20; // bytes: many times what a helper can have
    if (status.st_size > most)
        return untrusted(path, " is too large for a helper.");
    if (const auto reason = reasonToDistrust(status))
        return untrusted(path, *reason);
    return hashOf(file.get(), path);
}

} // namespace wakeloft
