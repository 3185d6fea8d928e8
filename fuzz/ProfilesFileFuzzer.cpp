#include "Fuzz.h"
#include "Profiles/ProfilesFile.h"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    auto const profiles = ProfilesFile::decode(fuzz::text(data, size));
    if (!profiles)
        return 0;
    auto const saved = ProfilesFile::encode(*profiles);
    auto const loaded = ProfilesFile::decode(saved);
    fuzz::require(loaded == profiles, "what was saved is loaded as it was");
    fuzz::require(ProfilesFile::encode(*loaded) == saved, "and saved as it was");
    return 0;
}
