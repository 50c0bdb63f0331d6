#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace wakeloft {

/// A box that keeps the program from what other programs can reach.
enum class Sandbox { none, flatpak, snap };
Sandbox currentSandbox();

/// What a command has to name so that this very program is started; empty where the system does not tell.
std::filesystem::path programPath();

/// `path` lies in `folder` or deeper.
bool isBelow(const std::filesystem::path& path, const std::filesystem::path& folder);

/// Where installed programs lie and stay: /usr and /opt are the package manager's and the administrator's,
/// ~/.local and ~/bin are where users install what is theirs alone, ~/Applications is where they keep
/// programs that are one file. What runs elsewhere, in a build or a download folder, on a stick or in /tmp,
/// may be gone at the next login.
std::vector<std::filesystem::path> installationFolders();

} // namespace wakeloft
