// Between stored values and Foundation's, for .mm files.
#pragma once

#include "support/UserDefaults.h"

#import <Foundation/Foundation.h>

namespace wakeloft {

/// An object of a kind that is never stored becomes an empty text: it is there, and nothing that anybody asks
/// for.
DefaultsValue fromFoundation(id _Nonnull object);
id _Nonnull toFoundation(const DefaultsValue& value);

} // namespace wakeloft
