#pragma once

#include "Support/Log.h"
#include "Support/Uuid.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace tarn {

// What the user once answered about single sites, by profile: one file per profile, written at every answer. An answer
// that could not be written is logged and holds in memory.
class SiteDecisions {
public:
    SiteDecisions(std::filesystem::path folder, Log);

    // Site: a host. Key: what was asked, in words of the asker's own.
    std::optional<bool> find(Uuid const& profile, std::string const& site, std::string const& key);
    void remember(Uuid const& profile, std::string const& site, std::string const& key, bool answer);
    // All of the profile's.
    void remove(Uuid const& profile);

private:
    using Answers = std::map<std::string, std::map<std::string, bool>>;

    Answers& answersOf(Uuid const& profile);
    std::filesystem::path file(Uuid const& profile) const;

    std::filesystem::path m_folder;
    Log m_log;
    std::map<Uuid, Answers> m_answers;
};

}
