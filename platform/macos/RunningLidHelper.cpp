#include "RunningLidHelper.h"

#include "CodeSigningIdentity.h"
#include "lease/LidHelperService.h"

#include <libproc.h>
#include <mach-o/ldsyms.h>
#include <sys/proc_info.h>
#include <sys/stat.h>
#include <sys/sysctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace wakeloft {

using File = LidHelperFileWatch::File;
using Identity = LidHelperFileWatch::Identity;

namespace {

static_assert(sizeof(proc_regionwithpathinfo) == 1272);
static_assert(offsetof(proc_regionwithpathinfo, prp_vip.vip_vi.vi_stat.vst_dev) == 96);
static_assert(offsetof(proc_regionwithpathinfo, prp_vip.vip_vi.vi_stat.vst_ino) == 104);

// The kernel's records hold a device as 32 bits without a sign, a file's status with one.
std::uint64_t device(std::uint32_t number) {
    return number;
}

} // namespace

std::optional<File> runningExecutable() {
    // The region of memory that the program's own header is in, and with it the file behind that.
    const auto address = reinterpret_cast<std::uint64_t>(&_mh_execute_header);
    proc_regionwithpathinfo region{};
    const int size = proc_pidinfo(getpid(), PROC_PIDREGIONPATHINFO, address, &region, sizeof region);
    const auto& status = region.prp_vip.vip_vi.vi_stat;
    if (size < static_cast<int>(sizeof region) || status.vst_ino == 0)
        return std::nullopt;
    return File{.device = device(status.vst_dev), .inode = status.vst_ino};
}

std::optional<std::string> executablePath() {
    std::array<char, PROC_PIDPATHINFO_MAXSIZE> path{};
    const int length = proc_pidpath(getpid(), path.data(), path.size());
    if (length <= 0)
        return std::nullopt;
    return std::string(path.data(), static_cast<std::size_t>(length));
}

std::optional<std::string> launchedPath(int process) {
    std::array name = {CTL_KERN, KERN_PROCARGS2, process};
    std::size_t size = 0;
    if (sysctl(name.data(), name.size(), nullptr, &size, nullptr, 0) != 0)
        return std::nullopt;
    std::vector<char> record(size);
    if (sysctl(name.data(), name.size(), record.data(), &size, nullptr, 0) != 0)
        return std::nullopt;
    return launchedPathIn(std::span(record).first(std::min(size, record.size())));
}

// The number of arguments, then the path up to a NUL, then what does not matter here.
std::optional<std::string> launchedPathIn(std::span<const char> argumentRecord) {
    if (argumentRecord.size() < sizeof(int))
        return std::nullopt;
    const std::string_view rest(argumentRecord.data() + sizeof(int), argumentRecord.size() - sizeof(int));
    const auto end = rest.find('\0');
    if (!rest.starts_with('/') || end == std::string_view::npos)
        return std::nullopt;
    return std::string(rest.substr(0, end));
}

std::optional<Identity> identityOfFileAt(const std::string& path) {
    struct stat status{};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return Identity{.device = device(static_cast<std::uint32_t>(status.st_dev)),
                    .inode = status.st_ino,
                    .size = status.st_size,
                    .modifiedSeconds = status.st_mtimespec.tv_sec,
                    .modifiedNanoseconds = status.st_mtimespec.tv_nsec};
}

std::optional<LidHelperFileWatch>
watchForRunningHelper(const std::optional<std::string>& path, std::optional<File> startedFrom,
                      const std::optional<std::string>& runningCodeDirectoryHash,
                      const std::optional<std::string>& teamIdentifier) {
    const auto requirement = LidHelperService::codeRequirement(LidHelperService::label, teamIdentifier);
    if (!path || !startedFrom || !runningCodeDirectoryHash || !requirement)
        return std::nullopt;
    return LidHelperFileWatch(*path, *runningCodeDirectoryHash, *startedFrom, identityOfFileAt,
                              [requirement = *requirement](const std::string& file) {
                                  return CodeSigningIdentity::codeDirectoryHashOfCodeAt(file, requirement);
                              });
}

} // namespace wakeloft
