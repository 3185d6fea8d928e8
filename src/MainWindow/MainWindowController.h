#pragma once

#include "Downloads/DownloadManager.h"
#include "MainWindow/FindBarController.h"
#include "MainWindow/FrameAutosave.h"
#include "MainWindow/LinkQuestion.h"
#include "MainWindow/MailPrint.h"
#include "MainWindow/PageNavigation.h"
#include "MainWindow/PopupList.h"
#include "MainWindow/SessionRefresher.h"
#include "MainWindow/SidebarView.h"
#include "MainWindow/UnreadWatch.h"
#include "MainWindow/WebProcessRecovery.h"
#include "MainWindow/WindowFactory.h"
#include "Platform/Panels.h"
#include "Platform/WebEngine.h"
#include "Profiles/ProfileStore.h"
#include "Profiles/WebViewPool.h"
#include "Support/Lifetime.h"
#include "Support/ScopedConnection.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarn {

class NotificationBridge;

// The main window: the sidebar, and the web view of the app that is shown. Switching apps swaps pooled views; switching
// profile replaces the pool.
class MainWindowController final : public platform::CommandReceiver, private SessionRefresher::Host {
public:
    struct Environment {
        platform::WebEngine& engine;
        WindowFactory& windows;
        platform::MenuBar& menuBar;
        platform::Workspace& workspace;
        platform::DockTile& dockTile;
        platform::Panels& panels;
        platform::NetworkMonitor& networkMonitor;
        platform::UserDefaults& defaults;
        platform::RunLoop& runLoop;
        // Where the user's downloads go, until another folder is chosen.
        std::filesystem::path downloadsFolder;
        // Outlives the controller; none where the application notifies nobody.
        NotificationBridge* notifications { nullptr };
        // Called once, when there is something to see.
        std::function<void()> onFirstPage {};
        // Starts the application again, drawing in software; none where it does so already.
        std::function<void()> restartSafely {};
        Log log;
    };
    using DataStoreFor = std::function<std::shared_ptr<platform::WebsiteDataStore>(Uuid const&)>;

    // The store outlives the controller. Without a mapping, each profile has the store of its own identifier.
    MainWindowController(ProfileStore&, Environment, DataStoreFor = {});
    ~MainWindowController();

    // Set by the owner; the profile menus then offer it.
    void setOnManageProfiles(std::function<void()>);
    SidebarView& sidebar() { return m_sidebar; }
    FindBarController& findBar() { return m_findBar; }
    platform::WebWindow& window() { return *m_window; }
    WebViewPool& pool() { return *m_pool; }
    DownloadManager& downloads() { return m_downloads; }
    GoogleApp current() const { return m_current; }
    PopupList& popups() { return m_popups; }

    // Does nothing for an app that the active profile does not use.
    void show(GoogleApp);
    void showWindow() { m_window->present(); }
    // Shows the app whose view this is, and the window; or the popup. Nothing for a view that is gone.
    void bringForward(platform::WebView const&);
    // In a new popup window of the active profile.
    void openWindow(Url const&);
    void askWhereToOpen(Url const&);
    // The profile is gone at once; its website data then follows. Throws ProfileStore::Failure and changes nothing when
    // the store refuses. The completion gets the reason why data was left on disk, or nothing.
    void deleteProfile(Uuid const&, std::function<void(std::optional<std::string>)> completion);
    void openGmailNotificationSettings();
    void computerDidWake() { m_failedLoads.retrySoon(); }
    // Saves what waits to be saved.
    void prepareToTerminate() { m_frame.flush(); }

    bool perform(platform::Command, int tag) override;
    std::optional<platform::CommandState> validate(platform::Command, int tag) const override;

private:
    // Before the window, so that it loads while that is made.
    void startFirstPage();
    void makeWindow();
    void profilesChanged();
    GoogleApp appToShow(Profile const&) const;
    void rebuildPool(Profile const&);
    void makePool(Profile const&);
    void configure(platform::WebView&, GoogleApp);
    void showFind();
    void printPage();
    void applyZoom(std::optional<double> delta);
    platform::WebView* currentView() const;
    platform::Menu profileMenu();
    PageServices pageServices();
    Uuid profileOf(platform::WebView const&) const;

    std::chrono::steady_clock::time_point now() const override { return m_environment.runLoop.now(); }
    void reloadApps(std::function<bool(platform::WebView const&)> const& isWanted) override;

    ProfileStore& m_profiles;
    Environment m_environment;
    DataStoreFor m_dataStoreFor;
    std::function<void()> m_onManageProfiles;
    GoogleApp m_current { GoogleApp::mail };

    SidebarView m_sidebar;
    FindBarController m_findBar;
    FrameAutosave m_frame;
    UnreadWatch m_unread;
    SessionRefresher m_session;
    FirstPage m_firstPage;
    WebProcessRecovery m_recovery;
    SiteDecisions m_decisions;
    ExternalLinks m_externalLinks;
    PermissionQuestion m_permissions;
    FailedLoads m_failedLoads;
    LinkQuestion m_linkQuestion;
    DownloadManager m_downloads;
    PageNavigation m_navigation;
    MailPrint m_mailPrint;
    std::unique_ptr<platform::WebWindow> m_window;
    // After its delegates, so that the views end first.
    std::unique_ptr<WebViewPool> m_pool;
    PopupList m_popups;
    std::optional<Uuid> m_poolProfileID;
    ScopedConnection m_profilesConnection;
    Lifetime m_lifetime;
};

}
