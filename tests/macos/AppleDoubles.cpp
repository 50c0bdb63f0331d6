#include "AppleDoubles.h"

#include <CoreGraphics/CoreGraphics.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/ps/IOPowerSources.h>
#include <IOKit/pwr_mgt/IOPMLib.h>
#include <Security/Security.h>
#include <libproc.h>
#include <mach-o/ldsyms.h>
#include <sys/sysctl.h>

#include <algorithm>
#include <cstring>
#include <set>

namespace wakeloft {
AppleDoubles apple;
}
using wakeloft::apple;

namespace {

// Any object is a text.
template <class Reference>
Reference made(const std::string& text = "") {
    ++apple.liveObjects;
    return reinterpret_cast<Reference>(new std::string(text));
}

const std::string& text(const void* reference) {
    return *static_cast<const std::string*>(reference);
}

bool fails(const char* function) {
    return apple.failing == function;
}

template <class Reference>
OSStatus give(const char* function, Reference* place, const std::string& content = "") {
    apple.calls.emplace_back(function);
    if (fails(function))
        return errSecCSReqFailed;
    *place = made<Reference>(content);
    return errSecSuccess;
}

} // namespace

// NOLINTBEGIN(clang-analyzer-nullability.*): the adapters pass a place wherever it is needed
extern "C" {

struct mach_header_64 {
    int magic;
};
const mach_header_64 _mh_execute_header{1};
const CFAllocatorRef kCFAllocatorDefault = nullptr;
const mach_port_t kIOMainPortDefault = 0;
const CFStringRef kSecCodeInfoUnique = __CFStringMakeConstantString("unique");

CFStringRef __CFStringMakeConstantString(const char* characters) {
    static std::set<std::string> constants; // released by nobody
    return reinterpret_cast<CFStringRef>(&*constants.insert(characters).first);
}

void CFRelease(CFTypeRef reference) {
    --apple.liveObjects;
    delete static_cast<const std::string*>(reference);
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    return text(one) == text(other);
}
CFTypeID CFDataGetTypeID() {
    return 0;
}
CFTypeID CFBooleanGetTypeID() {
    return 1;
}
CFTypeID CFGetTypeID(CFTypeRef reference) {
    return text(reference) == "true" || text(reference) == "false";
}
Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return text(boolean) == "true";
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count, CFStringEncoding,
                                    Boolean) {
    return made<CFStringRef>({reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)});
}
CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>(text(string).size());
}
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding, UInt8, Boolean, UInt8* buffer,
                         CFIndex capacity, CFIndex* used) {
    const auto wanted = text(string).substr(0, static_cast<std::size_t>(range.length));
    *used = static_cast<CFIndex>(wanted.size());
    if (buffer != nullptr)
        std::memcpy(buffer, wanted.data(), static_cast<std::size_t>(std::min(*used, capacity)));
    return range.length;
}
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex length, Boolean) {
    return made<CFURLRef>({reinterpret_cast<const char*>(path), static_cast<std::size_t>(length)});
}
const void* CFDictionaryGetValue(CFDictionaryRef, const void*) {
    return fails("CFDictionaryGetValue") ? nullptr : &apple.codeDirectoryHash;
}
CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(text(data).size());
}
const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return reinterpret_cast<const UInt8*>(text(data).data());
}

IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level, CFStringRef name,
                                     IOPMAssertionID* assertion) {
    apple.calls.push_back("create " + text(type) + " " + std::to_string(level) + " " + text(name) + " " +
                          std::to_string(*assertion));
    if (fails("IOPMAssertionCreateWithName"))
        return kIOReturnError;
    *assertion = 7;
    return kIOReturnSuccess;
}
IOReturn IOPMAssertionRelease(IOPMAssertionID assertion) {
    apple.calls.push_back("release " + std::to_string(assertion));
    return kIOReturnError;
}

CFTypeRef IOPSCopyPowerSourcesInfo() {
    apple.calls.emplace_back("power source");
    return apple.powerSource ? made<CFTypeRef>() : nullptr;
}
CFStringRef IOPSGetProvidingPowerSourceType(CFTypeRef) {
    return __CFStringMakeConstantString(apple.powerSource->c_str());
}
CGError CGGetOnlineDisplayList(uint32_t capacity, CGDirectDisplayID* displays, uint32_t* count) {
    apple.calls.emplace_back("displays");
    for (uint32_t index = 0; index < std::min<std::size_t>(capacity, apple.displays.size()); ++index)
        displays[index] = index;
    *count = static_cast<uint32_t>(apple.displays.size());
    return fails("CGGetOnlineDisplayList") ? kCGErrorFailure : kCGErrorSuccess;
}
boolean_t CGDisplayIsBuiltin(CGDirectDisplayID display) {
    return apple.displays.at(display);
}

CFMutableDictionaryRef IOServiceMatching(const char* name) {
    return made<CFMutableDictionaryRef>(name);
}
io_service_t IOServiceGetMatchingService(mach_port_t, CFDictionaryRef matching) {
    const bool isFound = text(matching) == "IOPMrootDomain" && !fails("IOServiceGetMatchingService");
    CFRelease(matching);
    apple.liveObjects += isFound;
    return isFound;
}
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t, CFStringRef key, CFAllocatorRef,
                                          IOOptionBits) {
    if (!apple.sleepDisabled || text(key) != "SleepDisabled")
        return nullptr;
    return made<CFTypeRef>(*apple.sleepDisabled);
}
kern_return_t IOObjectRelease(io_object_t) {
    --apple.liveObjects;
    return kIOReturnSuccess;
}

OSStatus SecCodeCopySelf(SecCSFlags, SecCodeRef* self) {
    return give("SecCodeCopySelf", self);
}
OSStatus SecCodeCopyStaticCode(SecCodeRef, SecCSFlags, SecStaticCodeRef* code) {
    return give("SecCodeCopyStaticCode", code);
}
OSStatus SecCodeCopyDesignatedRequirement(SecStaticCodeRef, SecCSFlags, SecRequirementRef* requirement) {
    return give("SecCodeCopyDesignatedRequirement", requirement);
}
OSStatus SecCodeCopySigningInformation(SecStaticCodeRef, SecCSFlags, CFDictionaryRef* information) {
    return give("SecCodeCopySigningInformation", information);
}
OSStatus SecStaticCodeCreateWithPath(CFURLRef, SecCSFlags, SecStaticCodeRef* code) {
    return give("SecStaticCodeCreateWithPath", code);
}
OSStatus SecStaticCodeCheckValidity(SecStaticCodeRef, SecCSFlags, SecRequirementRef requirement) {
    apple.calls.push_back("SecStaticCodeCheckValidity " + text(requirement));
    return fails("SecStaticCodeCheckValidity") ? errSecCSReqFailed : errSecSuccess;
}
OSStatus SecRequirementCreateWithString(CFStringRef string, SecCSFlags, SecRequirementRef* requirement) {
    return give("SecRequirementCreateWithString", requirement, text(string));
}
OSStatus SecRequirementCopyString(SecRequirementRef, SecCSFlags, CFStringRef* string) {
    return give("SecRequirementCopyString", string, "identifier x");
}

int csops(pid_t, unsigned operation, void* buffer, std::size_t size) {
    const auto answer = apple.codeSigning.find(operation);
    if (answer == apple.codeSigning.end() || answer->second.size() > size)
        return -1;
    std::memcpy(buffer, answer->second.data(), answer->second.size());
    return 0;
}

int proc_pidinfo(int, int flavour, uint64_t address, void* buffer, int size) {
    if (flavour != 8 || address != reinterpret_cast<uint64_t>(&_mh_execute_header))
        return 0;
    std::memset(buffer, 0, static_cast<std::size_t>(size));
    std::memcpy(static_cast<char*>(buffer) + 96, &apple.device, sizeof apple.device);
    std::memcpy(static_cast<char*>(buffer) + 104, &apple.inode, sizeof apple.inode);
    return 1272;
}
int proc_pidpath(int, void*, uint32_t) {
    return 0;
}
int sysctl(int*, unsigned, void*, std::size_t*, void*, std::size_t) {
    return -1;
}
}
// NOLINTEND(clang-analyzer-nullability.*)
