#include "App/AppDelegate.h"

#include "App/MainMenu.h"
#include "App/NewItem.h"
#include "Apps/Mailto.h"
#include "Profiles/OneXMigration.h"

#include <algorithm>
#include <utility>

namespace tarn {

using platform::Command;

AppDelegate::AppDelegate(AppEnvironment environment)
    : m_environment(std::move(environment))
    , m_defaultEmailApp(m_environment.workspace, m_environment.panels)
    , m_safeRendering(std::move(m_environment.start), m_environment.defaults, m_environment.panels)
    , m_updater(m_environment.update,
          m_environment.hostsTests ? UpdaterManager::HostsTests::yes : UpdaterManager::HostsTests::no,
          m_environment.updater, m_environment.panels)
    , m_updateSchedule(m_environment.runLoop, m_environment.defaults, m_environment.store.now)
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationWillFinishLaunching()
{
    if (m_environment.hostsTests || !m_environment.notificationCenter)
        return;
    m_notifications.emplace(NotificationBridge::Environment {
        .center = *m_environment.notificationCenter,
        .activation = m_environment.activation,
        .workspace = m_environment.workspace,
        .makeUuid = m_environment.store.makeUuid,
        .log = m_environment.log,
    });
}

void AppDelegate::applicationDidFinishLaunching(LaunchRequest const& request)
{
    m_menuBar = std::make_unique<platform::MenuBar>(MainMenu::build());
    if (m_environment.hostsTests)
        return;
    openProfiles();
    useProfile(request.profile);
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
            .onFirstPage = [this] { m_safeRendering.startSucceeded(); },
            .restartSafely
            = m_safeRendering.isOn() ? nullptr : std::function([this] { m_safeRendering.keepAndRestart(); }),
            .log = m_environment.log,
        });
    m_menuBar->setReceivers({ m_mainWindow.get(), this, &m_defaultEmailApp, &m_updater });
    m_updater.onChange = [this] { m_menuBar->revalidate(); };
    m_defaultEmailApp.onChange = [this] { m_menuBar->revalidate(); };
    if (m_notifications)
        m_notifications->askOnFirstLaunch();
    m_mainWindow->setOnManageProfiles([this] { settingsController().show(SettingsModel::Tab::profiles); });
    m_mainWindow->sidebar().onSettings = [this] { settingsController().show(); };
    m_environment.powerMonitor.setOnResume([this] { m_mainWindow->computerDidWake(); });
    if (request.window == LaunchRequest::Window::show)
        showMainWindow();
    if (m_updater.isActive())
        m_updateSchedule.start([this] { m_updater.checkInBackground(); });
    application(std::exchange(m_pendingURLs, {}));
}

void AppDelegate::handle(LaunchRequest const& request)
{
    bool const first = !m_menuBar;
    if (!first)
        useProfile(request.profile);

    std::vector<Url> urls;
    for (auto const& argument : request.urls) {
        if (auto url = Url::parse(argument))
            urls.push_back(*std::move(url));
    }
    application(urls);
    if (first)
        applicationDidFinishLaunching(request);
    if (auto const address = NewItem::address(request.newItem); address && m_mainWindow)
        m_mainWindow->openWindow(*address);
    else if (!first && request.urls.empty() && request.window == LaunchRequest::Window::show)
        applicationShouldHandleReopen();
    if (!first && request.rendering == Rendering::safe && request.window == LaunchRequest::Window::show && m_mainWindow)
        m_safeRendering.offerRestart(&m_mainWindow->window());
}

void AppDelegate::application(std::vector<Url> const& urls)
{
    if (!m_mainWindow) {
        m_pendingURLs.insert(m_pendingURLs.end(), urls.begin(), urls.end());
        return;
    }
    for (auto const& url : urls) {
        if (auto const compose = Mailto::composeURL(url))
            m_mainWindow->openWindow(*compose);
    }
}

void AppDelegate::useProfile(std::string const& name)
{
    if (name.empty() || !m_profiles)
        return;
    auto const& all = m_profiles->profiles();
    auto const named = std::ranges::find(all, name, &Profile::name);
    if (named == all.end())
        m_environment.log("[Profiles] there is no profile of the name that was asked for");
    else if (named->id != m_profiles->activeID())
        m_profiles->setActive(named->id);
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
        showMainWindow();
}

void AppDelegate::showMainWindow()
{
    m_mainWindow->showWindow();
    m_safeRendering.remark(&m_mainWindow->window());
}

void AppDelegate::applicationWillTerminate()
{
    m_safeRendering.startSucceeded();
    if (!m_mainWindow)
        return;
    m_environment.powerMonitor.setOnResume(nullptr);
    m_mainWindow->prepareToTerminate();
    m_menuBar->setReceivers({});
    m_settings.reset();
    m_mainWindow.reset();
}

SettingsWindowController& AppDelegate::settingsController()
{
    if (!m_settings) {
        m_settings = std::make_unique<SettingsWindowController>(
            *m_profiles,
            SettingsWindowController::Environment {
                .windows = m_environment.windows,
                .panels = m_environment.panels,
                .loginItem = m_environment.loginItem,
                .safeRendering = m_safeRendering,
                .makeUuid = m_environment.store.makeUuid,
                .notifications = { .workspace = m_environment.workspace,
                    .activation = m_environment.activation,
                    .center = m_environment.notificationCenter },
            },
            [this](Uuid const& id, auto completion) { m_mainWindow->deleteProfile(id, std::move(completion)); },
            [this] { m_mainWindow->openGmailNotificationSettings(); });
    }
    return *m_settings;
}

bool AppDelegate::perform(Command command, int tag)
{
    switch (command) {
    case Command::openSettings:
        settingsController().show();
        return true;
    case Command::newItem:
        if (auto const url = m_menuBar->representedUrl(command, tag); url && m_mainWindow)
            m_mainWindow->openWindow(*url);
        return true;
    default:
        return false;
    }
}

std::optional<platform::CommandState> AppDelegate::validate(Command command, int /*tag*/) const
{
    switch (command) {
    case Command::openSettings:
        return platform::CommandState {};
    case Command::newItem:
        return platform::CommandState { .enabled = m_mainWindow != nullptr };
    default:
        return std::nullopt;
    }
}

}
