#pragma once

#include "App/AppDelegate.h"
#include "Fakes/FakeDesktop.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/Panels.h"
#include "Platform/Gtk/Pictures.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/Gtk/WebEngine.h"
#include "Platform/Gtk/WebView.h"
#include "Platform/Gtk/WindowCommands.h"
#include "StageServer.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <gtkmm/application.h>
#include <gtkmm/applicationwindow.h>

#include <functional>
#include <memory>
#include <string>

namespace tarn::test {

// The real engine, window and pages on the stand-in services; only the desktop around it (browser, dock) is recorded
// instead of reached. Every test has folders of its own.
class WebTest : public testing::Test, protected WindowFactory {
protected:
    explicit WebTest(stage::SignIn = stage::SignIn::automatic);
    ~WebTest() override;

    // The engine alone; launch() starts it too.
    void startEngine(gtk::Sandbox&);
    // The application from its launch to its orderly end. A later launch finds what the earlier one left.
    void launch() { launch(sandbox); }
    void launch(gtk::Sandbox&);
    void terminate();

    MainWindowController& controller() { return delegate->mainWindow(); }
    ProfileStore& profiles() { return delegate->profiles(); }
    gtk::WebView& view(GoogleApp app) { return static_cast<gtk::WebView&>(controller().pool().view(app)); }
    Gtk::ApplicationWindow& window();
    // The one that shows the view.
    static Gtk::Window& windowOf(gtk::WebView&);
    std::filesystem::path dataFolder(Uuid const& profile) const;
    std::filesystem::path cacheFolder(Uuid const& profile) const;

    // Runs the main loop until it is so. After a minute the test fails, and goes on.
    void waitUntil(std::function<bool()> const& condition, std::string const& what);
    // Shows the app and waits until its page has loaded and has its title.
    void open(GoogleApp);
    void waitForPage(GoogleApp);
    // Waits for the popup that something opens, until it is shown and has a page of that host.
    gtk::WebView& waitForPopup(std::size_t number, std::string const& host);
    // The result of an expression, or of a promise, in the page's main frame, as a string.
    std::string evaluate(gtk::WebView&, std::string const& expression);
    // How often a path of a host was asked for.
    int requestCount(std::string const& host, std::string const& path) const;

    // Real input, through the X server. The selector is of the page's main frame; the element is scrolled into view.
    void click(gtk::WebView&, std::string const& selector, std::string const& arguments = "click 1");
    void clickAt(Gtk::Widget&, double x, double y, std::string const& arguments = "click 1");
    void press(std::string const& keys);
    void type(std::string const& text);

    static std::string read(std::filesystem::path const&);
    // Whether any file below the folder holds the text.
    static bool holds(std::filesystem::path const& folder, std::string const& text);

    TemporaryFolder folder;
    stage::StageServer stage;
    // Where the engine, once started, finds all hosts.
    std::string proxyUri { stage.proxyUri() };
    FakeWorkspace workspace;
    FakeDockTile dockTile;
    gtk::Panels panels;
    // What the next launch uses.
    platform::Panels* desktopPanels { &panels };
    FakeNetworkMonitor networkMonitor;
    FakePowerMonitor powerMonitor;
    FakeLoginItem loginItem;
    gtk::Pictures pictures;
    FakeUserDefaults defaults;
    gtk::RunLoop runLoop;
    // Taken up by the next launch; none unless the test sets one.
    std::unique_ptr<platform::NotificationCenter> notificationCenter;
    // In the order their windows were made; those of closed windows dangle.
    std::vector<gtk::WebView*> popups;
    std::vector<std::string> log;
    gtk::Sandbox sandbox;
    std::unique_ptr<gtk::WebEngine> engine;
    std::unique_ptr<AppDelegate> delegate;

private:
    std::unique_ptr<platform::WebWindow> makeMainWindow(MainWindowAppearance const&, tarn::SidebarView&, DownloadList&,
        FindBarController&, platform::MenuBar&) override;
    std::unique_ptr<platform::PopupWindow> makePopupWindow(platform::WebView&, platform::MenuBar&) override;
    std::unique_ptr<platform::Window> makeSettingsWindow(SettingsWindowController&) override;

    gtk::WindowServices windowServices();

    Glib::RefPtr<Gtk::Application> m_application;

protected:
    gtk::Activation activation;
};

// Ends all of the engine's processes of that name (as the kernel has it, 15 characters), as a crash would.
void killEngineProcesses(std::string const& name);
// Those that run pages.
void killWebProcesses();

}
