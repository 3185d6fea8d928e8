#pragma once

#include "Apps/GoogleApp.h"
#include "Support/Uuid.h"

#include <optional>
#include <set>
#include <string>

namespace tarn {

// What the profile editor changes before anything is saved.
struct ProfileDraft {
    Uuid const id;
    // Whether saving makes a new profile.
    bool const isNew;
    std::string name;
    std::optional<std::string> avatarFile;
    std::set<GoogleApp> enabledApps;
};

}
