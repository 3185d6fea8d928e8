#include "Settings/ProfileEditor.h"

#include "MainWindow/ProfileMenu.h"
#include "Support/Unicode.h"

#include <exception>
#include <utility>

namespace tarn {

namespace {

constexpr auto unreadablePicture = "Tarn could not read that picture. Try another one.";
constexpr auto cannotSave = "Tarn could not save this profile.";

}

ProfileEditor::ProfileEditor(ProfileStore& profiles, platform::Panels& panels, platform::SheetParent parent,
    ProfileDraft draft, std::function<void()> dismiss)
    : m_profiles(profiles)
    , m_panels(panels)
    , m_parent(parent)
    , m_draft(std::move(draft))
    , m_dismiss(std::move(dismiss))
{
}

ProfileEditor::~ProfileEditor()
{
    // Left open at the end of the application.
    discardUnusedPictures();
}

platform::Avatar ProfileEditor::picture() const
{
    return ProfileMenu::avatar(m_profiles.avatarImage(m_draft.avatarFile), pictureSize);
}

bool ProfileEditor::canConfirm() const
{
    return !withoutOuterSpace(m_draft.name).empty() && !m_draft.enabledApps.empty();
}

void ProfileEditor::setName(std::string name)
{
    if (name == m_draft.name)
        return;
    m_draft.name = std::move(name);
    changed();
}

void ProfileEditor::setEnabled(GoogleApp app, bool enabled)
{
    bool const changes = enabled ? m_draft.enabledApps.insert(app).second : m_draft.enabledApps.erase(app) > 0;
    if (changes)
        changed();
}

void ProfileEditor::choosePicture()
{
    if (std::exchange(m_isChoosing, true))
        return;
    m_panels.showOpenPanel({ .message = "Choose a picture for this profile", .imagesOnly = true }, m_parent,
        { m_lifetime.guard([this](std::vector<std::filesystem::path> const& files) {
             m_isChoosing = false;
             if (!files.empty())
                 importPicture(files.front());
         }),
            {} });
}

void ProfileEditor::importPicture(std::filesystem::path const& file)
{
    try {
        m_draft.avatarFile = m_profiles.importAvatar(file);
        m_imported.push_back(*m_draft.avatarFile);
        m_error.reset();
    } catch (std::exception const&) {
        m_error = unreadablePicture;
    }
    changed();
}

void ProfileEditor::removePicture()
{
    m_draft.avatarFile.reset();
    changed();
}

void ProfileEditor::cancel()
{
    discardUnusedPictures();
    m_dismiss();
}

void ProfileEditor::save()
{
    if (!canConfirm())
        return;
    try {
        store();
    } catch (std::exception const&) {
        m_error = cannotSave;
        changed();
        return;
    }
    discardUnusedPictures();
    m_dismiss();
}

void ProfileEditor::store()
{
    auto const name = std::string(withoutOuterSpace(m_draft.name));
    // In catalogue order, as the set is.
    std::vector<GoogleApp> const apps(m_draft.enabledApps.begin(), m_draft.enabledApps.end());
    auto profile = m_draft.isNew ? m_profiles.create(name, apps) : m_profiles.profile(m_draft.id);
    if (!profile || (m_draft.isNew && !m_draft.avatarFile))
        return;
    profile->name = name;
    profile->avatarFile = m_draft.avatarFile;
    profile->enabledApps = apps;
    m_profiles.update(*profile);
}

void ProfileEditor::discardUnusedPictures()
{
    for (auto const& name : std::exchange(m_imported, {}))
        m_profiles.discardAvatar(name);
}

void ProfileEditor::changed()
{
    if (onChange)
        onChange();
}

}
