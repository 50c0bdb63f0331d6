#include "AtomicFile.h"

#include "Bus.h"
#include "Descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace wakeloft {

namespace {

std::unexpected<PlatformError> failed(std::string_view what, const std::filesystem::path& path, int error) {
    return std::unexpected(busFailure(std::string(what) + " " + path.string(), -error));
}

int writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return errno;
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

/// Writes the text to a new file beside `target`; its name, or the error.
std::expected<std::filesystem::path, int> writeBeside(const std::filesystem::path& target,
                                                      std::string_view text) {
    std::string name = target.string() + ".XXXXXX";
    Descriptor descriptor(mkostemp(name.data(), O_CLOEXEC)); // mode 0600
    if (descriptor.get() < 0)
        return std::unexpected(errno);
    int error = writeAll(descriptor.get(), text);
    if (error == 0 && fsync(descriptor.get()) < 0)
        error = errno;
    if (descriptor.closeNow() < 0 && error == 0)
        error = errno;
    if (error == 0)
        return name;
    unlink(name.c_str());
    return std::unexpected(error);
}

/// Where a link leads, also when there is no file yet; a ring of links leads to one of its links.
std::filesystem::path followed(std::filesystem::path path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int links = 0; links < mostLinks && std::filesystem::is_symlink(path, error); ++links) {
        auto next = std::filesystem::read_symlink(path, error);
        if (error)
            break;
        path = path.parent_path() / next; // an absolute `next` stands alone
    }
    return path;
}

} // namespace

std::expected<std::optional<std::string>, PlatformError> readWholeFile(const std::filesystem::path& path) {
    // Not blocking, so that a named pipe in the file's place cannot hang the start.
    const Descriptor descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (descriptor.get() < 0) {
        if (errno == ENOENT)
            return std::optional<std::string>();
        return failed("Cannot open", path, errno);
    }
    struct stat status{};
    if (fstat(descriptor.get(), &status) < 0)
        return failed("Cannot read", path, errno);
    if (!S_ISREG(status.st_mode))
        return failed("Cannot read", path, S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    std::string text;
    char buffer[4096];
    while (text.size() <= mostFileBytes) {
        const ssize_t count = read(descriptor.get(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failed("Cannot read", path, errno);
        if (count == 0)
            return text;
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return failed("Cannot read", path, EFBIG);
}

std::expected<void, PlatformError> replaceFile(const std::filesystem::path& path, const std::string& text,
                                               AtLink atLink) {
    if (text.size() > mostFileBytes)
        return failed("Cannot save", path, EFBIG);
    std::error_code error;
    const auto target = atLink == AtLink::followIt ? followed(path) : path;
    const auto folder = target.parent_path();
    std::filesystem::create_directories(folder, error);
    if (error)
        return failed("Cannot make the folder", folder, error.value());
    const auto written = writeBeside(target, text);
    if (!written)
        return failed("Cannot save", path, written.error());
    if (rename(written->c_str(), target.c_str()) < 0) {
        const int cause = errno;
        unlink(written->c_str());
        return failed("Cannot save", path, cause);
    }
    // The new file is whole already; this makes its name last through a power cut, where the file system can.
    const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const bool isSynced = opened.get() >= 0 && fsync(opened.get()) == 0;
    if (!isSynced && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP)
        return failed("Cannot save for good", path, errno);
    return {};
}

} // namespace wakeloft
