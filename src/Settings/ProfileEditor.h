#pragma once

#include "Platform/Avatar.h"
#include "Platform/Panels.h"
#include "Profiles/ProfileDraft.h"
#include "Profiles/ProfileStore.h"
#include "Support/Lifetime.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

// Edits the draft of a profile: name, picture and apps. The store changes only when the draft is saved, except for
// pictures, which are copied into it at once; those that end up unused are deleted.
class ProfileEditor {
public:
    static constexpr std::string_view nameTitle = "Name";
    static constexpr std::string_view namePrompt = "Work, Personal, a client";
    static constexpr std::string_view pictureTitle = "Picture";
    static constexpr std::string_view chooseTitle = "Choose…";
    static constexpr std::string_view removeTitle = "Remove";
    static constexpr std::string_view appsTitle = "Apps";
    static constexpr std::string_view appsNote = "Only these apps appear in the sidebar for this profile.";
    static constexpr std::string_view cancelTitle = "Cancel";
    static constexpr int pictureSize = 48;

    // The store and the panels outlive the editor. Open panels hang on the parent. dismiss may end the editor.
    ProfileEditor(ProfileStore&, platform::Panels&, platform::SheetParent, ProfileDraft, std::function<void()> dismiss);
    ~ProfileEditor();
    ProfileEditor(ProfileEditor const&) = delete;
    ProfileEditor& operator=(ProfileEditor const&) = delete;

    // Set by the widget that draws this.
    std::function<void()> onChange;

    ProfileDraft const& draft() const { return m_draft; }
    platform::Avatar picture() const;
    std::optional<std::string> const& error() const { return m_error; }
    std::string_view confirmTitle() const { return m_draft.isNew ? "Create" : "Save"; }
    bool canConfirm() const;

    void setName(std::string);
    void setEnabled(GoogleApp, bool enabled);
    void choosePicture();
    void removePicture();
    void cancel();
    // Does nothing while it cannot be confirmed.
    void save();

private:
    void importPicture(std::filesystem::path const&);
    void store();
    void discardUnusedPictures();
    void changed();

    ProfileStore& m_profiles;
    platform::Panels& m_panels;
    platform::SheetParent m_parent;
    ProfileDraft m_draft;
    std::function<void()> m_dismiss;
    std::optional<std::string> m_error;
    // Names of all pictures that came into the store while this was open.
    std::vector<std::string> m_imported;
    bool m_isChoosing { false };
    Lifetime m_lifetime;
};

}
