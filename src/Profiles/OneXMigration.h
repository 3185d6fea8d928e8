#pragma once

#include "Profiles/ProfileStore.h"
#include "Profiles/ProfilesFile.h"

#include <filesystem>
#include <optional>

namespace tarn::OneXMigration {

// The profiles of version 1.x, from the profiles.json of its folder, which is left as it is. Their pictures are copied
// into the store; the profiles themselves are not. All identifiers are new, so every profile has to sign in again.
// Nothing when there is nothing to take over. The file is untrusted: what is not as expected counts as missing.
std::optional<SavedProfiles> readProfiles(
    std::filesystem::path const& folder, ProfileStore& avatarsInto, ProfileStore::Environment const&);

}
