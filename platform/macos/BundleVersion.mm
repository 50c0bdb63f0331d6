#include "BundleVersion.h"

#include "FoundationText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

namespace wakeloft {

namespace {

/// A regular file of 1 MiB at the most, as a whole.
NSData* smallFile(const std::string& path) {
    constexpr off_t most = 1'048'576;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); // of a pipe, do not wait
    if (descriptor < 0)
        return nil;
    struct stat status{};
    std::vector<char> bytes;
    bool isWhole = false;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= most) {
        bytes.resize(static_cast<std::size_t>(status.st_size));
        isWhole = read(descriptor, bytes.data(), bytes.size()) == status.st_size;
    }
    close(descriptor);
    return isWhole ? [NSData dataWithBytes:bytes.data() length:bytes.size()] : nil;
}

std::string textUnder(NSString* key, NSDictionary* dictionary) {
    id value = dictionary[key];
    return [value isKindOfClass:[NSString class]] ? plainText((NSString*)value) : std::string();
}

} // namespace

std::optional<LidHelperService::Version> bundleVersionAround(const std::string& executablePath) {
    const auto contents = std::filesystem::path(executablePath).parent_path().parent_path();
    @autoreleasepool { // it is asked before there is a loop that has one
        NSData* data = smallFile(contents / "Info.plist");
        if (data == nil)
            return std::nullopt;
        id list = [NSPropertyListSerialization propertyListWithData:data
                                                            options:NSPropertyListImmutable
                                                             format:nil
                                                              error:nil];
        if (![list isKindOfClass:[NSDictionary class]])
            return std::nullopt;
        return LidHelperService::Version::checked(textUnder(@"CFBundleShortVersionString", list),
                                                  textUnder(@"CFBundleVersion", list));
    }
}

} // namespace wakeloft
