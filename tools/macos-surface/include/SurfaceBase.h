// The declarations below this folder are our own: just the parts of macOS's interfaces that the product calls, written
// from their documentation, each with its types, nullability and the release that brought it. They stand in for the
// SDK's headers where there is no Mac, so that what is written for a Mac is checked on every machine. They hold no code.
#pragma once
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#define SURFACE_EXTERN extern "C"

#ifdef __clang__
#define SURFACE_SINCE(release) __attribute__((availability(macos, introduced = release)))
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
#define CF_CONSUMED __attribute__((cf_consumed))
#else // the adapters without Objective-C are also compiled for their tests, by any compiler
#define SURFACE_SINCE(release)
#define NS_ASSUME_NONNULL_BEGIN
#define NS_ASSUME_NONNULL_END
#define CF_RETURNS_RETAINED
#define CF_CONSUMED
#define _Nullable
#define _Nonnull
#endif
#ifdef __OBJC__
#define CF_BRIDGED_TYPE(T) __attribute__((objc_bridge(T)))
#else
#define CF_BRIDGED_TYPE(T)
#endif
#define CF_ASSUME_NONNULL_BEGIN NS_ASSUME_NONNULL_BEGIN
#define CF_ASSUME_NONNULL_END NS_ASSUME_NONNULL_END
