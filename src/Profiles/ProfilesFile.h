#pragma once

#include "Profiles/Profile.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

struct SavedProfiles {
    std::vector<Profile> profiles;
    Uuid activeID;

    friend bool operator==(SavedProfiles const&, SavedProfiles const&) = default;
};

// The persisted form of the profiles: JSON (RFC 8259), dates in ISO 8601 with whole seconds.
namespace ProfilesFile {

// Decodes again: bytes of a name that are not UTF-8 become U+FFFD, and a zoom factor that is not finite, which
// JSON cannot say, is left out.
std::string encode(SavedProfiles const&);

// Nothing when the text is not such a file through and through: a required key is missing, a value has another type,
// an app or a zoom key is unknown, or it holds more than 4 MiB. Unknown keys are ignored. The text is untrusted.
std::optional<SavedProfiles> decode(std::string_view);

}

}
