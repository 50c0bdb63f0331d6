#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace wakeloft {

/// Stands in for macOS's C functions: records the calls that have an effect, answers as it is told, and
/// counts the objects that it has handed out and not got back.
struct AppleDoubles {
    std::vector<std::string> calls;
    int liveObjects = 0;
    std::string failing; ///< the name of the function that fails

    std::optional<std::string> powerSource = "AC Power"; ///< none: no information
    std::vector<bool> displays;                          ///< each: is it built in
    std::optional<std::string> sleepDisabled;            ///< "true", "false" or anything else
    std::map<unsigned, std::string> codeSigning;         ///< the kernel's answer to each operation
    std::string codeDirectoryHash;                       ///< of any file
    std::uint32_t device = 0;
    std::uint64_t inode = 0;
};

extern AppleDoubles apple;

} // namespace wakeloft
