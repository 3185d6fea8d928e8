#include "Profiles/ProfilesFile.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <utility>

namespace tarn::ProfilesFile {

namespace {

using nlohmann::json;

// Room for ten thousand profiles. What a file of this size can hold, at any depth, is neither slow to read nor large.
constexpr std::size_t largestFile = 4 << 20;

json encoded(Profile const& profile)
{
    json object;
    object["id"] = profile.id.string();
    object["name"] = profile.name;
    if (profile.avatarFile)
        object["avatarFile"] = *profile.avatarFile;
    auto& apps = object["enabledApps"] = json::array();
    for (auto const app : profile.enabledApps)
        apps.push_back(app.rawValue());
    auto& zoom = object["zoom"] = json::object();
    for (auto const& [app, factor] : profile.zoom) {
        if (std::isfinite(factor))
            zoom[std::string(app.rawValue())] = factor;
    }
    object["createdAt"] = toIso8601(profile.createdAt);
    return object;
}

// The member of that name when it is a string.
std::string const* stringMember(json const& object, char const* name)
{
    auto const member = object.find(name);
    return member == object.end() ? nullptr : member->get_ptr<std::string const*>();
}

std::optional<Uuid> uuidMember(json const& object, char const* name)
{
    auto const* text = stringMember(object, name);
    return text ? Uuid::parse(*text) : std::nullopt;
}

std::optional<std::vector<GoogleApp>> decodedApps(json const& object)
{
    auto const member = object.find("enabledApps");
    if (member == object.end() || !member->is_array())
        return std::nullopt;
    std::vector<GoogleApp> apps;
    for (auto const& value : *member) {
        auto const* text = value.get_ptr<std::string const*>();
        auto const app = text ? GoogleApp::fromRawValue(*text) : std::nullopt;
        if (!app)
            return std::nullopt;
        apps.push_back(*app);
    }
    return apps;
}

std::optional<std::map<GoogleApp, double>> decodedZoom(json const& object)
{
    auto const member = object.find("zoom");
    if (member == object.end() || !member->is_object())
        return std::nullopt;
    std::map<GoogleApp, double> zoom;
    for (auto const& [key, value] : member->items()) {
        auto const app = GoogleApp::fromRawValue(key);
        if (!app || !value.is_number())
            return std::nullopt;
        zoom.emplace(*app, value.get<double>());
    }
    return zoom;
}

std::optional<Profile> decodedProfile(json const& object)
{
    auto const id = uuidMember(object, "id");
    auto const* name = stringMember(object, "name");
    auto apps = decodedApps(object);
    auto zoom = decodedZoom(object);
    auto const* date = stringMember(object, "createdAt");
    auto const createdAt = date ? fromIso8601(*date) : std::nullopt;
    if (!id || !name || !apps || !zoom || !createdAt)
        return std::nullopt;

    Profile profile { *id, *name, std::nullopt, std::move(*apps), std::move(*zoom), *createdAt };
    if (auto const avatar = object.find("avatarFile"); avatar != object.end() && !avatar->is_null()) {
        auto const* file = avatar->get_ptr<std::string const*>();
        if (!file)
            return std::nullopt;
        profile.avatarFile = *file;
    }
    return profile;
}

}

std::string encode(SavedProfiles const& saved)
{
    json file;
    file["activeID"] = saved.activeID.string();
    auto& profiles = file["profiles"] = json::array();
    for (auto const& profile : saved.profiles)
        profiles.push_back(encoded(profile));
    return file.dump(2, ' ', false, json::error_handler_t::replace) + '\n';
}

std::optional<SavedProfiles> decode(std::string_view text)
{
    if (text.size() > largestFile)
        return std::nullopt;
    // Without the parser's callback, which goes through all of an array at each of its objects.
    auto const file = json::parse(text, nullptr, /* allow_exceptions */ false);
    auto const activeID = uuidMember(file, "activeID");
    auto const profiles = file.find("profiles");
    if (!activeID || profiles == file.end() || !profiles->is_array())
        return std::nullopt;

    SavedProfiles saved { {}, *activeID };
    for (auto const& value : *profiles) {
        auto profile = decodedProfile(value);
        if (!profile)
            return std::nullopt;
        saved.profiles.push_back(std::move(*profile));
    }
    return saved;
}

}
