#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

// Who keeps this copy of the program up to date.
namespace tarn::Installation {

using Environment = std::function<bool(std::string const& variable)>;

// For users, as the end of "… is updated by"; nothing when the program may offer updates itself. The environment says
// whether a variable is set.
std::optional<std::string> updatedBy(std::filesystem::path const& executable, Environment const& isSet);

}
