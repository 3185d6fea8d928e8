#include "Profiles/ProfileStore.h"

#include "Support/Ascii.h"
#include "Support/DurableFile.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <system_error>
#include <utility>

namespace tarn {

namespace {

namespace fs = std::filesystem;

constexpr auto logTag = "[Profiles] ";
constexpr double closeToOne = 0.001;
constexpr std::size_t longestExtension = 10;

// A name that stays inside the folder that it is looked up in.
bool isBareFileName(std::string_view name)
{
    return !name.empty() && name != "." && name != ".." && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

// The extension for the copy of a picture: lower-case and harmless, whatever the picture was called.
std::string avatarExtension(fs::path const& source)
{
    auto extension = toAsciiLower(source.extension().native());
    extension.erase(0, 1);
    bool const isPlain = std::ranges::all_of(
        extension, [](char character) { return isAsciiLetter(character) || isAsciiDigit(character); });
    return isPlain && !extension.empty() && extension.size() <= longestExtension ? extension : "png";
}

}

char const* ProfileStore::Failure::what() const noexcept
{
    switch (m_reason) {
    case lastProfile:
        return "the last profile cannot be deleted";
    case noApps:
        return "a profile needs an app";
    case notFound:
        return "no such profile";
    }
    return "";
}

ProfileStore::ProfileStore(fs::path folder, Environment environment)
    : m_folder(std::move(folder))
    , m_environment(std::move(environment))
{
    if (load())
        return;
    auto profile = makeProfile("Personal", { GoogleApp::allCases.begin(), GoogleApp::allCases.end() });
    m_createdFresh = true;
    auto const id = profile.id;
    adopt({ std::move(profile) }, id);
    save(Announce::yes);
}

bool ProfileStore::load()
{
    auto const text = readFile(file());
    auto decoded = text ? ProfilesFile::decode(*text) : std::nullopt;
    if (decoded && !decoded->profiles.empty()) {
        adopt(std::move(decoded->profiles), decoded->activeID);
        return true;
    }
    std::error_code unknown;
    m_hasUnreadableFile = fs::status(file(), unknown).type() != fs::file_type::not_found;
    return false;
}

void ProfileStore::adopt(std::vector<Profile> profiles, Uuid activeID)
{
    m_saved.profiles.clear();
    std::set<Uuid> ids;
    for (auto& profile : profiles) {
        // A second profile with the id of another would share its sign-in.
        if (ids.insert(profile.id).second)
            m_saved.profiles.push_back(std::move(profile));
        else
            m_environment.log(logTag + ("dropped a second profile with the id " + profile.id.string()));
    }
    m_saved.activeID = ids.contains(activeID) ? activeID : m_saved.profiles.front().id;
}

Profile ProfileStore::makeProfile(std::string name, std::vector<GoogleApp> enabledApps) const
{
    // Whole seconds, as the file keeps them, so that a profile is the same after a restart.
    return { m_environment.makeUuid(), std::move(name), std::nullopt, std::move(enabledApps), {},
        std::chrono::floor<std::chrono::seconds>(m_environment.now()) };
}

std::vector<Profile>::iterator ProfileStore::find(Uuid id)
{
    return std::ranges::find(m_saved.profiles, id, &Profile::id);
}

Profile ProfileStore::active() const
{
    return profile(activeID()).value_or(profiles().front());
}

std::optional<Profile> ProfileStore::profile(Uuid id) const
{
    auto const found = std::ranges::find(profiles(), id, &Profile::id);
    return found == profiles().end() ? std::nullopt : std::optional(*found);
}

Profile ProfileStore::create(std::string name, std::vector<GoogleApp> enabledApps)
{
    if (enabledApps.empty())
        throw Failure(Failure::noApps);
    auto profile = makeProfile(std::move(name), std::move(enabledApps));
    m_saved.profiles.push_back(profile);
    save(Announce::yes);
    return profile;
}

void ProfileStore::update(Profile profile)
{
    auto const stored = find(profile.id);
    if (stored == m_saved.profiles.end())
        throw Failure(Failure::notFound);
    if (profile.enabledApps.empty())
        throw Failure(Failure::noApps);
    auto const old = std::exchange(*stored, std::move(profile));
    discardAvatar(old.avatarFile);
    save(Announce::yes);
}

void ProfileStore::remove(Uuid id)
{
    auto const stored = find(id);
    if (stored == m_saved.profiles.end())
        throw Failure(Failure::notFound);
    if (m_saved.profiles.size() < 2)
        throw Failure(Failure::lastProfile);
    auto const avatarFile = stored->avatarFile;
    m_saved.profiles.erase(stored);
    if (m_saved.activeID == id)
        m_saved.activeID = m_saved.profiles.front().id;
    discardAvatar(avatarFile);
    save(Announce::yes);
}

void ProfileStore::setActive(Uuid id)
{
    if (find(id) == m_saved.profiles.end())
        throw Failure(Failure::notFound);
    if (m_saved.activeID == id)
        return;
    m_saved.activeID = id;
    save(Announce::yes);
}

void ProfileStore::setZoom(double factor, GoogleApp app, Uuid profileID)
{
    auto const stored = find(profileID);
    if (stored == m_saved.profiles.end())
        return;
    if (std::abs(factor - 1.0) <= closeToOne)
        stored->zoom.erase(app);
    else
        stored->zoom.insert_or_assign(app, factor);
    save(Announce::no);
}

void ProfileStore::replaceAll(std::vector<Profile> profiles, Uuid activeID)
{
    if (profiles.empty())
        return;
    adopt(std::move(profiles), activeID);
    save(Announce::yes);
}

std::string ProfileStore::importAvatar(fs::path const& source)
{
    createPrivateFolder(avatars());
    auto const name = m_environment.makeUuid().string() + "." + avatarExtension(source);
    std::error_code error;
    fs::copy_file(source, avatars() / name, error);
    if (error) {
        // A full disk leaves a part of the copy.
        if (error != std::errc::file_exists)
            discardAvatar(name);
        throw fs::filesystem_error("cannot copy", source, avatars() / name, error);
    }
    return name;
}

std::optional<fs::path> ProfileStore::avatarImage(Profile const& profile) const
{
    return avatarImage(profile.avatarFile);
}

std::optional<fs::path> ProfileStore::avatarImage(std::optional<std::string> const& name) const
{
    if (!name || !isBareFileName(*name))
        return std::nullopt;
    auto const path = avatars() / *name;
    std::error_code unknown;
    return fs::is_regular_file(path, unknown) ? std::optional(path) : std::nullopt;
}

void ProfileStore::discardAvatar(std::optional<std::string> const& name)
{
    bool const isInUse = std::ranges::find(profiles(), name, &Profile::avatarFile) != profiles().end();
    if (!name || !isBareFileName(*name) || isInUse)
        return;
    std::error_code ignored;
    fs::remove(avatars() / *name, ignored);
}

void ProfileStore::save(Announce announce)
{
    try {
        createPrivateFolder(m_folder);
        if (m_hasUnreadableFile)
            keepUnreadableFile();
        replaceFileDurably(file(), ProfilesFile::encode(m_saved));
    } catch (fs::filesystem_error const& error) {
        auto const* where = m_hasUnreadableFile ? "the unreadable profiles.json could not be kept: " : "";
        m_environment.log(logTag + ("could not save: " + (where + error.code().message())));
    }
    // Nothing may follow: a handler may have ended this store.
    if (announce == Announce::yes)
        profilesDidChange.emit();
}

void ProfileStore::keepUnreadableFile()
{
    auto stem = "profiles.unreadable-" + toIso8601(m_environment.now());
    std::ranges::replace(stem, ':', '-');
    auto name = stem + ".json";
    for (int number = 2; fs::exists(fs::symlink_status(m_folder / name)); ++number)
        name = stem + "-" + std::to_string(number) + ".json";

    // A symbolic link stays where it is when it can, because the next file is written through it.
    auto const content = readFile(file());
    bool const isLink = fs::is_symlink(fs::symlink_status(file()));
    std::error_code error;
    if (!content || !isLink)
        fs::rename(file(), m_folder / name, error);
    if (content && (isLink || error))
        replaceFileDurably(m_folder / name, *content);
    else if (error)
        throw fs::filesystem_error("cannot keep", file(), error);
    m_hasUnreadableFile = false;
    m_environment.log(logTag + ("could not read profiles.json; kept as " + name));
}

fs::path ProfileStore::file() const
{
    return m_folder / "profiles.json";
}

fs::path ProfileStore::avatars() const
{
    return m_folder / "avatars";
}

}
