#include "CodeSigningIdentity.h"

#include "CoreFoundationText.h"

#include <Security/Security.h>
#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <span>
#include <string_view>

namespace wakeloft {

namespace {

// The kernel's answers about a process's signature. The C library has the call, its headers do not.
enum CodeSigningOperation : unsigned { codeDirectoryHashOperation = 5, teamIdentifierOperation = 14 };

bool askAboutThisProcess(CodeSigningOperation operation, std::span<char> answer) {
    using Csops = int (*)(pid_t, unsigned, void*, size_t);
    const auto csops = reinterpret_cast<Csops>(dlsym(RTLD_DEFAULT, "csops"));
    return csops != nullptr && csops(getpid(), operation, answer.data(), answer.size()) == 0;
}

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr unsigned base = 16;
    std::string text;
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        text += digits[byte / base];
        text += digits[byte % base];
    }
    return text;
}

} // namespace

std::optional<std::string> CodeSigningIdentity::currentTeamIdentifier() {
    constexpr std::size_t headerSize = 8; // 4 bytes of nothing, 4 of length
    std::array<char, 72> answer{};
    if (!askAboutThisProcess(teamIdentifierOperation, answer))
        return std::nullopt;
    // Bytes that are no text need no mending: a requirement is formed of capitals and digits alone.
    std::string_view team(answer.data() + headerSize, answer.size() - headerSize);
    team = team.substr(0, team.find('\0'));
    return team.empty() ? std::nullopt : std::optional(std::string(team));
}

std::optional<std::string> CodeSigningIdentity::currentCodeDirectoryHash() {
    std::array<char, 20> answer{}; // the kernel takes no other size
    if (!askAboutThisProcess(codeDirectoryHashOperation, answer))
        return std::nullopt;
    return hexadecimal({answer.data(), answer.size()});
}

std::optional<std::string> CodeSigningIdentity::currentDesignatedRequirement() {
    SecCodeRef self = nullptr;
    if (SecCodeCopySelf(kSecCSDefaultFlags, &self) != errSecSuccess)
        return std::nullopt;
    const Owned<SecCodeRef> ownedSelf(self);
    SecStaticCodeRef code = nullptr;
    if (SecCodeCopyStaticCode(self, kSecCSDefaultFlags, &code) != errSecSuccess)
        return std::nullopt;
    const Owned<SecStaticCodeRef> ownedCode(code);
    SecRequirementRef requirement = nullptr;
    if (SecCodeCopyDesignatedRequirement(code, kSecCSDefaultFlags, &requirement) != errSecSuccess)
        return std::nullopt;
    const Owned<SecRequirementRef> ownedRequirement(requirement);
    CFStringRef text = nullptr;
    if (SecRequirementCopyString(requirement, kSecCSDefaultFlags, &text) != errSecSuccess)
        return std::nullopt;
    return plainText(Owned<CFStringRef>(text).get());
}

std::optional<std::string> CodeSigningIdentity::codeDirectoryHashOfCodeAt(const std::string& path,
                                                                          const std::string& requirement) {
    const Owned<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()),
        false));
    SecStaticCodeRef code = nullptr;
    if (!url || SecStaticCodeCreateWithPath(url.get(), kSecCSDefaultFlags, &code) != errSecSuccess)
        return std::nullopt;
    const Owned<SecStaticCodeRef> ownedCode(code);
    SecRequirementRef wanted = nullptr;
    if (SecRequirementCreateWithString(coreFoundationText(requirement).get(), kSecCSDefaultFlags, &wanted) !=
        errSecSuccess)
        return std::nullopt;
    const Owned<SecRequirementRef> ownedWanted(wanted);
    if (SecStaticCodeCheckValidity(code, kSecCSDefaultFlags, wanted) != errSecSuccess)
        return std::nullopt;
    CFDictionaryRef information = nullptr;
    if (SecCodeCopySigningInformation(code, kSecCSDefaultFlags, &information) != errSecSuccess)
        return std::nullopt;
    const Owned<CFDictionaryRef> ownedInformation(information);
    const auto* hash = static_cast<CFDataRef>(CFDictionaryGetValue(information, kSecCodeInfoUnique));
    if (hash == nullptr || CFGetTypeID(hash) != CFDataGetTypeID())
        return std::nullopt;
    return hexadecimal({reinterpret_cast<const char*>(CFDataGetBytePtr(hash)),
                        static_cast<std::size_t>(CFDataGetLength(hash))});
}

} // namespace wakeloft
