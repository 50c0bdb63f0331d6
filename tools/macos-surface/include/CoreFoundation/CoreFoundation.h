#pragma once
#include <SurfaceBase.h>
CF_ASSUME_NONNULL_BEGIN

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef int32_t SInt32;
typedef uint32_t UInt32;
typedef uint64_t UInt64;
typedef SInt32 OSStatus;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef double CFTimeInterval;
typedef UInt32 CFStringEncoding;
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100, kCFStringEncodingISOLatin1 = 0x0201 };

typedef const void* CFTypeRef;
typedef const struct CF_BRIDGED_TYPE(NSString) __CFString* CFStringRef;
typedef const struct CF_BRIDGED_TYPE(NSArray) __CFArray* CFArrayRef;
typedef const struct CF_BRIDGED_TYPE(NSDictionary) __CFDictionary* CFDictionaryRef;
typedef struct CF_BRIDGED_TYPE(NSMutableDictionary) __CFDictionary* CFMutableDictionaryRef;
typedef const struct CF_BRIDGED_TYPE(NSData) __CFData* CFDataRef;
typedef const struct CF_BRIDGED_TYPE(NSNumber) __CFBoolean* CFBooleanRef;
typedef const struct CF_BRIDGED_TYPE(NSURL) __CFURL* CFURLRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef CFStringRef CFRunLoopMode;
struct CFRange {
    CFIndex location;
    CFIndex length;
};
typedef struct CFRange CFRange;
static inline CFRange CFRangeMake(CFIndex location, CFIndex length) { return CFRange{location, length}; }

#ifdef __APPLE__
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))
#else
SURFACE_EXTERN CFStringRef __CFStringMakeConstantString(const char* text);
#define CFSTR(text) __CFStringMakeConstantString("" text "")
#endif

SURFACE_EXTERN const CFAllocatorRef _Nullable kCFAllocatorDefault;
SURFACE_EXTERN void CFRelease(CFTypeRef object);
SURFACE_EXTERN Boolean CFEqual(CFTypeRef one, CFTypeRef other);
SURFACE_EXTERN CFTypeID CFGetTypeID(CFTypeRef object);

SURFACE_EXTERN CFTypeID CFBooleanGetTypeID(void);
SURFACE_EXTERN Boolean CFBooleanGetValue(CFBooleanRef boolean);

SURFACE_EXTERN CFStringRef _Nullable CFStringCreateWithBytes(CFAllocatorRef _Nullable allocator, const UInt8* bytes,
    CFIndex count, CFStringEncoding encoding, Boolean isExternal) CF_RETURNS_RETAINED;
SURFACE_EXTERN CFIndex CFStringGetLength(CFStringRef string);
SURFACE_EXTERN CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
    Boolean isExternal, UInt8* _Nullable buffer, CFIndex capacity, CFIndex* _Nullable used);

SURFACE_EXTERN const void* _Nullable CFDictionaryGetValue(CFDictionaryRef dictionary, const void* _Nullable key);

struct CFArrayCallBacks;
typedef struct CFArrayCallBacks CFArrayCallBacks;
SURFACE_EXTERN const CFArrayCallBacks kCFTypeArrayCallBacks;
SURFACE_EXTERN CFArrayRef _Nullable CFArrayCreate(CFAllocatorRef _Nullable allocator,
    const void* _Nullable* _Nullable values, CFIndex count, const CFArrayCallBacks* _Nullable callBacks) CF_RETURNS_RETAINED;

SURFACE_EXTERN CFTypeID CFDataGetTypeID(void);
SURFACE_EXTERN CFIndex CFDataGetLength(CFDataRef data);
SURFACE_EXTERN const UInt8* _Nullable CFDataGetBytePtr(CFDataRef data);

SURFACE_EXTERN CFURLRef _Nullable CFURLCreateFromFileSystemRepresentation(CFAllocatorRef _Nullable allocator,
    const UInt8* path, CFIndex length, Boolean isDirectory) CF_RETURNS_RETAINED;

SURFACE_EXTERN const CFRunLoopMode kCFRunLoopCommonModes;
SURFACE_EXTERN CFRunLoopRef CFRunLoopGetMain(void);
SURFACE_EXTERN void CFRunLoopRun(void);
SURFACE_EXTERN void CFRunLoopStop(CFRunLoopRef loop);
SURFACE_EXTERN void CFRunLoopWakeUp(CFRunLoopRef loop);
SURFACE_EXTERN void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
SURFACE_EXTERN void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
#ifdef __BLOCKS__
SURFACE_EXTERN void CFRunLoopPerformBlock(CFRunLoopRef loop, CFTypeRef mode, void (^block)(void)) SURFACE_SINCE(10.6);
#endif
CF_ASSUME_NONNULL_END
