#include "BuildInfo.h"

namespace wakeloft {

InfoDictionary buildInfoDictionary() {
    InfoDictionary dictionary;
    for (const auto& [key, text] :
         {std::pair<const char*, std::string>{AboutInfo::versionKey, WAKELOFT_VERSION},
          {AboutInfo::buildKey, WAKELOFT_BUILD}})
        if (!text.empty())
            dictionary.emplace(key, DefaultsValue{text});
    return dictionary;
}

} // namespace wakeloft
