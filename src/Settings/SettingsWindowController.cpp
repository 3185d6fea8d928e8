#include "Settings/SettingsWindowController.h"

#include <utility>

namespace tarn {

SettingsWindowController::TabAppearance SettingsWindowController::appearance(SettingsModel::Tab tab)
{
    if (tab == SettingsModel::Tab::profiles)
        return { .title = "Profiles", .iconName = "tarn-profiles-symbolic" };
    return { .title = "Notifications", .iconName = "tarn-notifications-symbolic" };
}

SettingsWindowController::SettingsWindowController(ProfileStore& profiles, Environment environment,
    ProfilesPane::DeleteProfile deleteProfile, std::function<void()> openGmailSettings)
    : m_profilesPane(profiles, environment.panels, std::move(environment.makeUuid), std::move(deleteProfile))
    , m_notificationsPane(environment.notifications, std::move(openGmailSettings))
    , m_generalPane(environment.loginItem, environment.safeRendering)
    , m_window(environment.windows.makeSettingsWindow(*this))
{
    m_profilesPane.sheetParent = m_window.get();
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show(std::optional<SettingsModel::Tab> tab)
{
    if (tab) {
        m_model.setTab(*tab);
        if (onSelect)
            onSelect();
    }
    m_window->present();
}

}
