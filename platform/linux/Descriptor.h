#pragma once

#include <unistd.h>

#include <utility>

namespace wakeloft {

/// Owns a file descriptor; a negative number is none.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0)
            close(number_);
    }
    [[nodiscard]] int get() const { return number_; }
    int closeNow() { return close(std::exchange(number_, -1)); }

  private:
    int number_;
};

} // namespace wakeloft
