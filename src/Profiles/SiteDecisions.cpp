#include "Profiles/SiteDecisions.h"

#include "Support/DurableFile.h"

#include <nlohmann/json.hpp>

namespace tarn {

SiteDecisions::SiteDecisions(std::filesystem::path folder, Log log)
    : m_folder(std::move(folder))
    , m_log(std::move(log))
{
}

std::optional<bool> SiteDecisions::find(Uuid const& profile, std::string const& site, std::string const& key)
{
    auto const& answers = answersOf(profile);
    auto const ofSite = answers.find(site);
    if (ofSite == answers.end())
        return std::nullopt;
    auto const answer = ofSite->second.find(key);
    return answer == ofSite->second.end() ? std::nullopt : std::optional(answer->second);
}

void SiteDecisions::remember(Uuid const& profile, std::string const& site, std::string const& key, bool answer)
{
    auto& answers = answersOf(profile);
    answers[site][key] = answer;
    try {
        createPrivateFolder(m_folder);
        replaceFileDurably(file(profile), nlohmann::json(answers).dump(2, ' ', true) + "\n");
    } catch (std::filesystem::filesystem_error const& error) {
        m_log(std::string("[Sites] could not save an answer: ") + error.what());
    }
}

void SiteDecisions::remove(Uuid const& profile)
{
    m_answers.erase(profile);
    std::error_code error;
    std::filesystem::remove(file(profile), error);
    if (error)
        m_log("[Sites] could not remove a profile's answers: " + error.message());
}

SiteDecisions::Answers& SiteDecisions::answersOf(Uuid const& profile)
{
    auto const [entry, isNew] = m_answers.try_emplace(profile);
    if (!isNew)
        return entry->second;
    // What is no answer is asked again.
    auto const content = nlohmann::json::parse(readFile(file(profile)).value_or(""), nullptr, false);
    if (!content.is_object())
        return entry->second;
    for (auto const& [site, answers] : content.items()) {
        if (!answers.is_object())
            continue;
        for (auto const& [key, answer] : answers.items()) {
            if (answer.is_boolean())
                entry->second[site][key] = answer.get<bool>();
        }
    }
    return entry->second;
}

std::filesystem::path SiteDecisions::file(Uuid const& profile) const
{
    return m_folder / (profile.string() + ".json");
}

}
