#include "App/Installation.h"

#include <algorithm>

namespace tarn::Installation {

std::optional<std::string> updatedBy(std::filesystem::path const& executable, Environment const& isSet)
{
    if (isSet("FLATPAK_ID"))
        return "Flatpak";
    if (isSet("SNAP"))
        return "the Snap store";
    if (isSet("APPIMAGE"))
        return "the program that looks after your AppImages";
    auto const path = executable.lexically_normal();
    auto const below
        = [&](std::filesystem::path const& folder) { return std::ranges::mismatch(folder, path).in1 == folder.end(); };
    if (below("/nix") || below("/gnu") || (below("/usr") && !below("/usr/local")))
        return "your system's package manager";
    return std::nullopt;
}

}
