#pragma once

#include "App/AppEnvironment.h"
#include "App/DefaultEmailApp.h"
#include "App/LaunchRequest.h"
#include "App/UpdateSchedule.h"
#include "Bridge/NotificationBridge.h"
#include "MainWindow/MainWindowController.h"
#include "Platform/MenuBar.h"
#include "Profiles/ProfileStore.h"
#include "Settings/SettingsWindowController.h"

#include <memory>
#include <optional>

namespace tarn {

// The root owner of the running application.
class AppDelegate final : public platform::CommandReceiver {
public:
    explicit AppDelegate(AppEnvironment);
    ~AppDelegate();
    AppDelegate(AppDelegate const&) = delete;
    AppDelegate& operator=(AppDelegate const&) = delete;

    // First of all: from here on clicks on notifications have a receiver.
    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching(LaunchRequest const& = {});
    // What a start of the program asks for: the first launches the application.
    void handle(LaunchRequest const&);
    // Links that the system hands over. Those that come too early wait for the end of the launch.
    void application(std::vector<Url> const& urls);
    // The application was started once more, or its dock entry was clicked.
    void applicationShouldHandleReopen();
    // Everything that waits to be saved is saved, and the pages end; nothing of the window works afterwards.
    void applicationWillTerminate();

    ProfileStore& profiles() { return *m_profiles; }
    MainWindowController& mainWindow() { return *m_mainWindow; }
    // Made on first use.
    SettingsWindowController& settingsController();

    bool perform(platform::Command, int tag) override;
    std::optional<platform::CommandState> validate(platform::Command, int tag) const override;

private:
    void openProfiles();
    void useProfile(std::string const& name);
    void showMainWindow();

    AppEnvironment m_environment;
    DefaultEmailApp m_defaultEmailApp;
    SafeRendering m_safeRendering;
    UpdaterManager m_updater;
    UpdateSchedule m_updateSchedule;
    std::optional<NotificationBridge> m_notifications;
    std::unique_ptr<platform::MenuBar> m_menuBar;
    std::optional<ProfileStore> m_profiles;
    std::unique_ptr<MainWindowController> m_mainWindow;
    std::vector<Url> m_pendingURLs;
    std::unique_ptr<SettingsWindowController> m_settings;
};

}
