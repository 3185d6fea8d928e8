#pragma once

#include "Platform/Avatar.h"
#include "Platform/Panels.h"
#include "Profiles/ProfileStore.h"
#include "Settings/ProfileEditor.h"
#include "Support/Lifetime.h"
#include "Support/ScopedConnection.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

struct ProfileRow {
    Uuid id;
    std::string name;
    platform::Avatar picture;
    // Says so; every other row can be switched to.
    bool isActive { false };
    bool canBeDeleted { false };

    friend bool operator==(ProfileRow const&, ProfileRow const&) = default;
};

// The settings' page with the list of profiles: switches, makes, edits and deletes them.
class ProfilesPane {
public:
    static constexpr std::string_view footer = "Each profile is its own Google sign-in, kept separate on this Mac.";
    static constexpr std::string_view activeTitle = "Active";
    static constexpr std::string_view switchTitle = "Switch";
    static constexpr std::string_view editTitle = "Edit…";
    static constexpr std::string_view deleteHelp = "Delete profile";
    static constexpr std::string_view newTitle = "New Profile…";
    static constexpr int pictureSize = 32;

    // Deletes a profile and its website data. May throw, as the store does, when nothing was deleted; the completion
    // gets the reason why data was left behind.
    using DeleteProfile = std::function<void(Uuid const&, std::function<void(std::optional<std::string>)> completion)>;

    // The store and the panels outlive the pane.
    ProfilesPane(ProfileStore&, platform::Panels&, std::function<Uuid()> makeUuid, DeleteProfile);
    ProfilesPane(ProfilesPane const&) = delete;
    ProfilesPane& operator=(ProfilesPane const&) = delete;

    // Set by the owner: what the dialogs hang on.
    platform::SheetParent sheetParent;
    // Set by the widget that draws this.
    std::function<void()> onChange;

    std::vector<ProfileRow> rows() const;
    // While there is one it is shown as a sheet.
    ProfileEditor* editor() const { return m_editor.get(); }

    void switchTo(Uuid const&);
    void newProfile();
    void edit(Uuid const&);
    void askToDelete(Uuid const&);

private:
    void openEditor(ProfileDraft);
    void closeEditor();
    void deleteProfile(Uuid const&);
    void explainFailure(std::string const& reason);
    void changed();

    ProfileStore& m_profiles;
    platform::Panels& m_panels;
    std::function<Uuid()> m_makeUuid;
    DeleteProfile m_deleteProfile;
    std::unique_ptr<ProfileEditor> m_editor;
    ScopedConnection m_profilesConnection;
    Lifetime m_lifetime;
};

}
