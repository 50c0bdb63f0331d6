#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

namespace wakeloft {

struct CoreFoundationRelease {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// A Core Foundation object that is ours to release: what a function named Create or Copy returned.
template <class Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, CoreFoundationRelease>;

} // namespace wakeloft
