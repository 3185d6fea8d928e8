#pragma once

#include "App/SettingsModel.h"
#include "MainWindow/WindowFactory.h"
#include "Settings/GeneralPane.h"
#include "Settings/NotificationsPane.h"
#include "Settings/ProfilesPane.h"

#include <memory>
#include <optional>

namespace tarn {

// The application's one settings window. Closing hides it, with its state.
class SettingsWindowController {
public:
    struct TabAppearance {
        std::string_view title;
        std::string_view iconName;
    };
    static constexpr std::string_view title = "Settings";
    // Of the content, in points; the height is the pane's own.
    static constexpr int paneWidth = 500;
    static TabAppearance appearance(SettingsModel::Tab);

    struct Environment {
        WindowFactory& windows;
        platform::Panels& panels;
        platform::LoginItem& loginItem;
        SafeRendering& safeRendering;
        std::function<Uuid()> makeUuid;
        NotificationsPane::Environment notifications;
    };

    // The store outlives the controller.
    SettingsWindowController(
        ProfileStore&, Environment, ProfilesPane::DeleteProfile, std::function<void()> openGmailSettings);
    ~SettingsWindowController();
    SettingsWindowController(SettingsWindowController const&) = delete;
    SettingsWindowController& operator=(SettingsWindowController const&) = delete;

    // Set by the window: the model's tab is to be in front, whatever is there.
    std::function<void()> onSelect;

    // Brings the window to the front, on that tab; without one on the tab selected last.
    void show(std::optional<SettingsModel::Tab> = std::nullopt);

    SettingsModel& model() { return m_model; }
    ProfilesPane& profilesPane() { return m_profilesPane; }
    GeneralPane& generalPane() { return m_generalPane; }
    NotificationsPane& notificationsPane() { return m_notificationsPane; }

private:
    SettingsModel m_model;
    ProfilesPane m_profilesPane;
    NotificationsPane m_notificationsPane;
    // Beside the two tabs of the model.
    GeneralPane m_generalPane;
    std::unique_ptr<platform::Window> m_window;
};

}
