#include "QuitAppleEvent.h"

#include <algorithm>
#include <array>

namespace wakeloft {

namespace {

constexpr std::uint32_t code(const char (&characters)[5]) {
    std::uint32_t number = 0;
    for (int index = 0; index < 4; ++index)
        number = number << 8 | static_cast<unsigned char>(characters[index]);
    return number;
}

} // namespace

bool QuitAppleEvent::isFromSystem() const {
    constexpr std::array systemReasons{code("quia"), code("rlgo"), code("rest"), code("shut"), code("logo")};
    return eventClass == code("aevt") && identifier == code("quit") && reason &&
           std::ranges::find(systemReasons, *reason) != systemReasons.end();
}

} // namespace wakeloft
