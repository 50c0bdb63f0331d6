#pragma once

#include "support/Signal.h"

#include <utility>

namespace wakeloft {

/// A value that signals after it has really changed, told by `==`. Several fields may feed one signal.
template <class T>
class Observable {
  public:
    explicit Observable(Signal& changed, T value = T()) : changed_(changed), value_(std::move(value)) {}

    [[nodiscard]] const T& get() const { return value_; }

    void set(T value) {
        if (value_ == value)
            return;
        value_ = std::move(value);
        changed_.emit();
    }

  private:
    Signal& changed_;
    T value_;
};

} // namespace wakeloft
