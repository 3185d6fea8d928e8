#pragma once

#include "Profiles/Profile.h"
#include "Profiles/ProfilesFile.h"
#include "Support/Log.h"

#include <sigc++/signal.h>

#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Owns the list of profiles, which one is active, and their pictures; keeps them in its folder, as profiles.json and
// avatars/. There is always at least one profile, and no two have the same id. Every change is on disk when the
// operation returns; if it could not be written, that is logged and the change holds in memory.
class ProfileStore {
public:
    // What the store takes from outside; all of it is required.
    struct Environment {
        std::function<Timestamp()> now;
        std::function<Uuid()> makeUuid;
        Log log;
    };

    class Failure : public std::exception {
    public:
        enum Reason { lastProfile, noApps, notFound };

        explicit Failure(Reason reason)
            : m_reason(reason)
        {
        }
        Reason reason() const { return m_reason; }
        // For logs; users get the caller's own words.
        char const* what() const noexcept override;

    private:
        Reason m_reason;
    };

    // Loads the profiles of the folder; makes a first one, and the folder, when there is no usable file. A file that
    // cannot be used is kept beside its successor.
    ProfileStore(std::filesystem::path folder, Environment);
    ProfileStore(ProfileStore const&) = delete;
    ProfileStore& operator=(ProfileStore const&) = delete;

    // Sent at the end of every change but a zoom, so that zooming rebuilds nothing. A handler may change the store
    // again, disconnect, or end the store.
    sigc::signal<void()> profilesDidChange;

    // In creation order. Valid until the next change.
    std::vector<Profile> const& profiles() const { return m_saved.profiles; }
    Uuid activeID() const { return m_saved.activeID; }
    Profile active() const;
    std::optional<Profile> profile(Uuid id) const;
    // Whether the construction had to make the first profile.
    bool createdFresh() const { return m_createdFresh; }
    std::filesystem::path const& folder() const { return m_folder; }

    // The new profile does not become active. Throws noApps.
    Profile create(std::string name, std::vector<GoogleApp> enabledApps);
    // Replaces every field of the profile with the same id; a picture that it no longer has is deleted. Throws notFound
    // before noApps.
    void update(Profile);
    // With its picture; its website data is the caller's to remove. Throws notFound, lastProfile.
    void remove(Uuid id);
    // Throws notFound.
    void setActive(Uuid id);
    // Does nothing for an unknown profile.
    void setZoom(double factor, GoogleApp, Uuid profileID);
    // Does nothing for an empty list. Without a profile of that id, the first becomes active.
    void replaceAll(std::vector<Profile>, Uuid activeID);

    // Copies a picture into the store under a new name, and returns the name for a profile's avatarFile.
    // Throws std::filesystem::filesystem_error.
    std::string importAvatar(std::filesystem::path const& source);
    // The profile's picture, if it has one and the file is there; it may be no image.
    std::optional<std::filesystem::path> avatarImage(Profile const&) const;
    // The same for the name of a picture.
    std::optional<std::filesystem::path> avatarImage(std::optional<std::string> const& name) const;
    // Deletes an imported picture that no profile has.
    void discardAvatar(std::optional<std::string> const& name);

private:
    enum class Announce { no, yes };

    bool load();
    void adopt(std::vector<Profile>, Uuid activeID);
    Profile makeProfile(std::string name, std::vector<GoogleApp> enabledApps) const;
    std::vector<Profile>::iterator find(Uuid id);
    void save(Announce);
    void keepUnreadableFile();
    std::filesystem::path file() const;
    std::filesystem::path avatars() const;

    std::filesystem::path const m_folder;
    Environment const m_environment;
    SavedProfiles m_saved;
    bool m_createdFresh { false };
    // A file that may not be overwritten before it is kept elsewhere.
    bool m_hasUnreadableFile { false };
};

}
