#include "Settings/ProfilesPane.h"

#include "MainWindow/ProfileMenu.h"

#include <exception>
#include <set>
#include <utility>

namespace tarn {

ProfilesPane::ProfilesPane(
    ProfileStore& profiles, platform::Panels& panels, std::function<Uuid()> makeUuid, DeleteProfile deleteProfile)
    : m_profiles(profiles)
    , m_panels(panels)
    , m_makeUuid(std::move(makeUuid))
    , m_deleteProfile(std::move(deleteProfile))
    , m_profilesConnection(m_profiles.profilesDidChange.connect([this] { changed(); }))
{
}

std::vector<ProfileRow> ProfilesPane::rows() const
{
    std::vector<ProfileRow> rows;
    for (auto const& profile : m_profiles.profiles()) {
        rows.push_back({
            .id = profile.id,
            .name = profile.name,
            .picture = ProfileMenu::avatar(m_profiles.avatarImage(profile), pictureSize),
            .isActive = profile.id == m_profiles.activeID(),
            .canBeDeleted = m_profiles.profiles().size() > 1,
        });
    }
    return rows;
}

void ProfilesPane::switchTo(Uuid const& id)
{
    try {
        m_profiles.setActive(id);
    } catch (ProfileStore::Failure const&) {
        // Gone meanwhile.
    }
}

void ProfilesPane::newProfile()
{
    openEditor({ .id = m_makeUuid(),
        .isNew = true,
        .name = {},
        .avatarFile = std::nullopt,
        .enabledApps = { GoogleApp::allCases.begin(), GoogleApp::allCases.end() } });
}

void ProfilesPane::edit(Uuid const& id)
{
    auto const profile = m_profiles.profile(id);
    if (!profile)
        return;
    openEditor({ .id = id,
        .isNew = false,
        .name = profile->name,
        .avatarFile = profile->avatarFile,
        .enabledApps = { profile->enabledApps.begin(), profile->enabledApps.end() } });
}

void ProfilesPane::openEditor(ProfileDraft draft)
{
    if (m_editor)
        return;
    m_editor = std::make_unique<ProfileEditor>(
        m_profiles, m_panels, sheetParent, std::move(draft), [this] { closeEditor(); });
    changed();
}

void ProfilesPane::closeEditor()
{
    // It is still at work, and drawn, while it says so.
    auto const editor = std::move(m_editor);
    changed();
}

void ProfilesPane::askToDelete(Uuid const& id)
{
    auto const profile = m_profiles.profile(id);
    if (!profile)
        return;
    platform::Alert const alert {
        .message = "Delete “" + profile->name + "”?",
        .informativeText = "Tarn signs it out of Google and removes its data from this Mac.",
        .buttons = { { .title = "Delete", .role = platform::ButtonRole::destructive },
            { .title = "Cancel", .role = platform::ButtonRole::cancel } },
    };
    m_panels.showAlert(alert, sheetParent,
        { m_lifetime.guard([this, id](platform::AlertResponse const& response) {
             if (response.button == 0u)
                 deleteProfile(id);
         }),
            {} });
}

void ProfilesPane::deleteProfile(Uuid const& id)
{
    try {
        m_deleteProfile(id, m_lifetime.guard([this](std::optional<std::string> const& error) {
            if (error)
                explainFailure(*error);
        }));
    } catch (std::exception const& error) {
        explainFailure(error.what());
    }
}

void ProfilesPane::explainFailure(std::string const& reason)
{
    m_panels.showAlert(
        { .message = "Could not delete the profile", .informativeText = reason, .buttons = { { .title = "OK" } } },
        sheetParent, { [](platform::AlertResponse const&) {}, {} });
}

void ProfilesPane::changed()
{
    if (onChange)
        onChange();
}

}
