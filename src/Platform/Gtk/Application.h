#pragma once

#include "App/AppDelegate.h"
#include "Platform/Gtk/UserDefaults.h"
#include "Platform/Gtk/WebEngine.h"
#include "Platform/Gtk/WindowCommands.h"

#include <gtkmm/application.h>

#include <filesystem>
#include <memory>

namespace tarn::gtk {

// The running program: one instance per user, the owner of the adapter's parts and of the core.
class Application final : public Gtk::Application, private WindowFactory {
public:
    struct Options {
        std::string applicationId;
        // Tarn makes its own folder in each of these.
        std::filesystem::path data;
        std::filesystem::path cache;
        std::filesystem::path configuration;
        // Where the first save panel opens.
        std::filesystem::path downloads;
        WebEngine::SessionSetUp sessionSetUp {};
        // Before the application opens its store for the first time.
        std::function<void(std::filesystem::path const& applicationSupport)> prepareData {};
        // As prepareStart() planned it.
        SafeRendering::Plan rendering {};
    };

    // Where the starts are counted that end before they have shown anything.
    static BlankStarts blankStarts(Options const&);
    static UserDefaults userDefaults(Options const&);
    // The user's own folders, as the desktop standard names them.
    static Options userOptions();

    explicit Application(Options);
    ~Application() override;

    AppDelegate& delegate() { return *m_delegate; }
    // After its end: it was ended to be started again, with safe rendering.
    bool isToRestart() const { return m_isToRestart; }

private:
    struct Ports;

    void on_startup() override;
    // Options and links never reach GIO, which would change links. What answerCommandLine() answers does not come here.
    bool local_command_line_vfunc(char**& arguments, int& exitStatus) override;
    void on_activate() override { handle({}); }
    void handle(LaunchRequest const&);
    // Takes 20 to 30 ms. Before the first window, and after the first page has begun to load.
    void loadStyle();
    void terminate();
    std::unique_ptr<platform::WebWindow> makeMainWindow(MainWindowAppearance const&, tarn::SidebarView&, DownloadList&,
        FindBarController&, platform::MenuBar&) override;
    std::unique_ptr<platform::PopupWindow> makePopupWindow(platform::WebView&, platform::MenuBar&) override;
    std::unique_ptr<platform::Window> makeSettingsWindow(SettingsWindowController&) override;

    WindowServices windowServices();

    Options m_options;
    // Tried while the toolkit starts.
    Sandbox m_sandbox;
    std::unique_ptr<Ports> m_ports;
    std::unique_ptr<AppDelegate> m_delegate;
    std::unique_ptr<platform::Timer> m_afterStart;
    std::unique_ptr<platform::Timer> m_farewell;
    bool m_isStyled { false };
    bool m_isToRestart { false };
};

}
