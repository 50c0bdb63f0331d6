#pragma once
#include <CoreFoundation/CoreFoundation.h>
CF_ASSUME_NONNULL_BEGIN
typedef struct CF_BRIDGED_TYPE(id) __SecCode* SecCodeRef;
typedef struct CF_BRIDGED_TYPE(id) __SecCode const* SecStaticCodeRef;
typedef struct CF_BRIDGED_TYPE(id) __SecRequirement* SecRequirementRef;
typedef uint32_t SecCSFlags;
enum : SecCSFlags { kSecCSDefaultFlags = 0 };
enum : OSStatus { errSecSuccess = 0, errSecCSUnsigned = -67062, errSecCSReqFailed = -67050 };
SURFACE_EXTERN const CFStringRef kSecCodeInfoUnique;
SURFACE_EXTERN OSStatus SecCodeCopySelf(SecCSFlags flags, SecCodeRef _Nullable* _Nonnull CF_RETURNS_RETAINED self);
SURFACE_EXTERN OSStatus SecCodeCopyStaticCode(SecCodeRef code, SecCSFlags flags,
    SecStaticCodeRef _Nullable* _Nonnull CF_RETURNS_RETAINED staticCode);
SURFACE_EXTERN OSStatus SecCodeCopyDesignatedRequirement(SecStaticCodeRef code, SecCSFlags flags,
    SecRequirementRef _Nullable* _Nonnull CF_RETURNS_RETAINED requirement);
SURFACE_EXTERN OSStatus SecCodeCopySigningInformation(SecStaticCodeRef code, SecCSFlags flags,
    CFDictionaryRef _Nullable* _Nonnull CF_RETURNS_RETAINED information);
SURFACE_EXTERN OSStatus SecStaticCodeCreateWithPath(CFURLRef path, SecCSFlags flags,
    SecStaticCodeRef _Nullable* _Nonnull CF_RETURNS_RETAINED staticCode);
SURFACE_EXTERN OSStatus SecStaticCodeCheckValidity(SecStaticCodeRef staticCode, SecCSFlags flags,
    SecRequirementRef _Nullable requirement);
SURFACE_EXTERN OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags,
    SecRequirementRef _Nullable* _Nonnull CF_RETURNS_RETAINED requirement);
SURFACE_EXTERN OSStatus SecRequirementCopyString(SecRequirementRef requirement, SecCSFlags flags,
    CFStringRef _Nullable* _Nonnull CF_RETURNS_RETAINED text);
CF_ASSUME_NONNULL_END
