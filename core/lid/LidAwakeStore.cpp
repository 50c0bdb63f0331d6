#include "lid/LidAwakeStore.h"

namespace wakeloft {

bool UserDefaultsLidAwakeStore::hasAcknowledgedHeatWarning() const {
    return defaults_.boolean(key);
}

void UserDefaultsLidAwakeStore::setHasAcknowledgedHeatWarning(bool hasAcknowledged) {
    defaults_.set(key, {hasAcknowledged});
}

} // namespace wakeloft
