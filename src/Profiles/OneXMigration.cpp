#include "Profiles/OneXMigration.h"

#include "Profiles/Zoom.h"
#include "Support/DurableFile.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <set>
#include <utility>

namespace tarn::OneXMigration {

namespace {

using nlohmann::json;

// Far more than anyone had. What a file of this size can hold, at any depth, is neither slow to read nor large.
constexpr std::size_t largestFile = 1 << 20;
constexpr std::size_t mostProfiles = 1000;

constexpr double closeToOne = 0.001;
// Milliseconds from 1970 that a Timestamp and the store's file can hold: years 1700 to 2200, roughly.
constexpr double earliest = -8.5e12;
constexpr double latest = 7.25e12;

// The member of that name when it has that type.
template <typename T> T const* member(json const& object, char const* name)
{
    auto const found = object.find(name);
    return found == object.end() ? nullptr : found->get_ptr<T const*>();
}

std::string const* textMember(json const& object, char const* name)
{
    auto const* text = member<std::string>(object, name);
    return text && !text->empty() ? text : nullptr;
}

std::vector<GoogleApp> apps(json const& object)
{
    std::set<GoogleApp> known;
    if (auto const* const values = member<json::array_t>(object, "enabledApps")) {
        for (auto const& value : *values) {
            auto const* text = value.get_ptr<std::string const*>();
            if (auto const app = text ? GoogleApp::fromRawValue(*text) : std::nullopt)
                known.insert(*app);
        }
    }
    if (known.empty())
        return { GoogleApp::allCases.begin(), GoogleApp::allCases.end() };
    return { known.begin(), known.end() };
}

// 1.x kept levels.
std::map<GoogleApp, double> zoom(json const& object)
{
    std::map<GoogleApp, double> factors;
    auto const* const levels = member<json::object_t>(object, "zoom");
    if (!levels)
        return factors;
    for (auto const& [key, level] : *levels) {
        auto const app = GoogleApp::fromRawValue(key);
        if (!app || !level.is_number())
            continue;
        auto const factor = Zoom::factor(level.get<double>());
        if (std::abs(factor - 1.0) > closeToOne)
            factors.emplace(*app, factor);
    }
    return factors;
}

Timestamp createdAt(json const& object, ProfileStore::Environment const& environment)
{
    auto moment = environment.now();
    if (auto const value = object.find("createdAt"); value != object.end() && value->is_number()) {
        auto const milliseconds = value->get<double>();
        if (milliseconds >= earliest && milliseconds <= latest)
            moment = Timestamp(std::chrono::milliseconds(static_cast<std::int64_t>(milliseconds)));
    }
    // Whole seconds, as the store keeps them.
    return std::chrono::floor<std::chrono::seconds>(moment);
}

std::optional<std::string> importedAvatar(json const& object, ProfileStore& store)
{
    auto const* path = textMember(object, "avatarPath");
    if (!path || path->front() != '/' || path->find('\0') != std::string::npos)
        return std::nullopt;
    try {
        return store.importAvatar(*path);
    } catch (std::filesystem::filesystem_error const&) {
        return std::nullopt;
    }
}

}

std::optional<SavedProfiles> readProfiles(
    std::filesystem::path const& folder, ProfileStore& avatarsInto, ProfileStore::Environment const& environment)
{
    auto const text = readFile(folder / "profiles.json");
    if (!text || text->size() > largestFile)
        return std::nullopt;
    auto const file = json::parse(*text, nullptr, /* allow_exceptions */ false);
    auto const* const values = member<json::array_t>(file, "profiles");
    if (!values)
        return std::nullopt;
    auto const* const activeID = member<std::string>(file, "activeProfileId");

    SavedProfiles migrated;
    std::optional<Uuid> active;
    for (auto const& value : *values) {
        if (migrated.profiles.size() == mostProfiles)
            break;
        if (!value.is_object())
            continue;
        auto const* const name = textMember(value, "name");
        Profile profile {
            .id = environment.makeUuid(),
            .name = name ? *name : "Profile " + std::to_string(migrated.profiles.size() + 1),
            .avatarFile = importedAvatar(value, avatarsInto),
            .enabledApps = apps(value),
            .zoom = zoom(value),
            .createdAt = createdAt(value, environment),
        };
        auto const* const id = member<std::string>(value, "id");
        if (id && activeID && *id == *activeID)
            active = profile.id;
        migrated.profiles.push_back(std::move(profile));
    }
    if (migrated.profiles.empty())
        return std::nullopt;
    migrated.activeID = active.value_or(migrated.profiles.front().id);
    return migrated;
}

}
