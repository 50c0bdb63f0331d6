#include "CoreFoundationText.h"

#include <cstdio>
#include <cstdlib>

namespace wakeloft {

Owned<CFStringRef> coreFoundationText(const std::string& text) {
    const auto* bytes = reinterpret_cast<const UInt8*>(text.data());
    const auto count = static_cast<CFIndex>(text.size());
    for (const CFStringEncoding encoding : {kCFStringEncodingUTF8, kCFStringEncodingISOLatin1})
        if (Owned<CFStringRef> string{
                CFStringCreateWithBytes(kCFAllocatorDefault, bytes, count, encoding, false)})
            return string;
    std::fputs("Wakeloft: out of memory.\n", stderr);
    std::abort();
}

std::string plainText(CFStringRef text) {
    constexpr UInt8 unknown = '?';
    const CFRange all = CFRangeMake(0, CFStringGetLength(text));
    CFIndex size = 0;
    CFStringGetBytes(text, all, kCFStringEncodingUTF8, unknown, false, nullptr, 0, &size);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(text, all, kCFStringEncodingUTF8, unknown, false, reinterpret_cast<UInt8*>(bytes.data()),
                     size, &size);
    return bytes;
}

} // namespace wakeloft
