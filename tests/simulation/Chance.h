#pragma once

#include "support/Date.h"

#include <cstdint>
#include <random>

namespace wakeloft {

/// Chance, the same for the same seed on every machine.
class Chance {
  public:
    explicit Chance(std::uint64_t seed) : engine_(seed) {}

    /// From 0 up to, not including, `count`.
    std::uint64_t below(std::uint64_t count) { return engine_() % count; }
    bool percent(unsigned chance) { return below(100) < chance; }
    Seconds between(Seconds least, Seconds most) {
        return least + (most - least) * static_cast<double>(below(1'000'001)) / 1e6;
    }

  private:
    std::mt19937_64 engine_;
};

} // namespace wakeloft
