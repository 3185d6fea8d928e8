#include "App/AppDelegate.h"

#include "App/MainMenu.h"
#include "Profiles/OneXMigration.h"

namespace tarn {

AppDelegate::AppDelegate(AppEnvironment environment)
    : m_environment(std::move(environment))
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationWillFinishLaunching()
{
    if (!m_environment.notificationCenter)
        return;
    m_notifications.emplace(NotificationBridge::Environment {
        .center = *m_environment.notificationCenter,
        .activation = m_environment.activation,
        .workspace = m_environment.workspace,
        .makeUuid = m_environment.store.makeUuid,
        .log = m_environment.log,
    });
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_menuBar = std::make_unique<platform::MenuBar>(MainMenu::build());
    openProfiles();
    m_mainWindow = std::make_unique<MainWindowController>(*m_profiles,
        MainWindowController::Environment {
            .engine = m_environment.engine,
            .windows = m_environment.windows,
            .menuBar = *m_menuBar,
            .workspace = m_environment.workspace,
            .dockTile = m_environment.dockTile,
            .panels = m_environment.panels,
            .networkMonitor = m_environment.networkMonitor,
            .defaults = m_environment.defaults,
            .runLoop = m_environment.runLoop,
            .downloadsFolder = m_environment.downloads,
            .notifications = m_notifications ? &*m_notifications : nullptr,
            .log = m_environment.log,
        });
    m_menuBar->setReceivers({ m_mainWindow.get() });
    if (m_notifications)
        m_notifications->askOnFirstLaunch();
    m_mainWindow->showWindow();
}

void AppDelegate::openProfiles()
{
    auto const folder = m_environment.applicationSupport / "Tarn";
    m_profiles.emplace(folder / "v2", m_environment.store);
    if (!m_profiles->createdFresh())
        return;
    if (auto migrated = OneXMigration::readProfiles(folder, *m_profiles, m_environment.store))
        m_profiles->replaceAll(std::move(migrated->profiles), migrated->activeID);
}

void AppDelegate::applicationShouldHandleReopen()
{
    if (m_mainWindow)
        m_mainWindow->showWindow();
}

void AppDelegate::applicationWillTerminate()
{
    if (!m_mainWindow)
        return;
    m_mainWindow->prepareToTerminate();
    m_menuBar->setReceivers({});
    m_mainWindow.reset();
}

}
