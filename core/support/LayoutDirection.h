#pragma once

namespace wakeloft {

/// Which way the interface reads.
enum class LayoutDirection { leftToRight, rightToLeft };

} // namespace wakeloft
