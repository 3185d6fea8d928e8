#pragma once

#include "Apps/GoogleApp.h"
#include "Support/Timestamp.h"
#include "Support/Uuid.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarn {

// One sign-in kept apart from the others.
struct Profile {
    // Never changes; also names the profile's website data store.
    Uuid id;
    // As the user typed it, UTF-8.
    std::string name;
    // A bare file name in the store's folder of pictures.
    std::optional<std::string> avatarFile;
    // In no particular order; what is shown is orderedApps().
    std::vector<GoogleApp> enabledApps;
    // Page zoom factors, 1.0 is 100 %; an app without one is shown at 1.0.
    std::map<GoogleApp, double> zoom;
    Timestamp createdAt;

    // The enabled apps in catalogue order.
    std::vector<GoogleApp> orderedApps() const
    {
        std::vector<GoogleApp> apps;
        std::ranges::copy_if(GoogleApp::allCases, std::back_inserter(apps),
            [this](GoogleApp app) { return std::ranges::find(enabledApps, app) != enabledApps.end(); });
        return apps;
    }

    friend bool operator==(Profile const&, Profile const&) = default;
};

}
