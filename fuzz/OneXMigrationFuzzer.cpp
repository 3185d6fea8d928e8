#include "Fuzz.h"
#include "Profiles/OneXMigration.h"
#include "Profiles/Zoom.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <set>

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    static TemporaryFolder const folder;
    static ProfileStore::Environment const environment {
        .now = [] { return Timestamp {}; }, .makeUuid = &Uuid::random, .log = [](std::string const&) {}
    };
    static ProfileStore store(folder / "v2", environment);

    std::ofstream(folder / "profiles.json", std::ios::binary) << fuzz::text(data, size);
    auto const migrated = OneXMigration::readProfiles(folder.path(), store, environment);
    if (!migrated)
        return 0;
    fuzz::require(!migrated->profiles.empty(), "there is something to take over");
    std::set<Uuid> ids;
    for (auto const& profile : migrated->profiles) {
        fuzz::require(ids.insert(profile.id).second, "no two have one identifier");
        fuzz::require(!profile.name.empty() && !profile.enabledApps.empty(), "each can be used");
        fuzz::require(
            !profile.avatarFile || profile.avatarFile->find('/') == std::string::npos, "a picture stays in its folder");
        for (auto const& [app, factor] : profile.zoom)
            fuzz::require(factor >= Zoom::factor(Zoom::minimumLevel) && factor <= Zoom::factor(Zoom::maximumLevel),
                "the zoom stays within the scale");
    }
    fuzz::require(ids.contains(migrated->activeID), "one of them is active");
    auto const saved = ProfilesFile::decode(ProfilesFile::encode(*migrated));
    fuzz::require(saved && saved->profiles.size() == migrated->profiles.size(), "they can be saved");
    return 0;
}
