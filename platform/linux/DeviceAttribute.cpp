#include "DeviceAttribute.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace wakeloft {

// Without a stream: the library's streams would be the greater part of the lid helper.
std::string deviceAttribute(const std::string& device, const char* name) {
    constexpr std::size_t most = 64;
    std::array<char, most> text{};
    const int descriptor = open((device + '/' + name).c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    const ssize_t size = read(descriptor, text.data(), text.size());
    close(descriptor);
    const std::string_view all(text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return std::string(all.substr(0, all.find('\n')));
}

} // namespace wakeloft
