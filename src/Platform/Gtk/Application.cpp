#include "Platform/Gtk/Application.h"

#include "App/CommandLine.h"
#include "App/Installation.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/DockTile.h"
#include "Platform/Gtk/EmptyTheme.h"
#include "Platform/Gtk/LaunchMessage.h"
#include "Platform/Gtk/LoginItem.h"
#include "Platform/Gtk/MainWindow.h"
#include "Platform/Gtk/NetworkMonitor.h"
#include "Platform/Gtk/NotificationCenter.h"
#include "Platform/Gtk/Panels.h"
#include "Platform/Gtk/Pictures.h"
#include "Platform/Gtk/PopupWindow.h"
#include "Platform/Gtk/PowerMonitor.h"
#include "Platform/Gtk/Renderers.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/Gtk/SessionClient.h"
#include "Platform/Gtk/SettingsWindow.h"
#include "Platform/Gtk/Updater.h"
#include "Platform/Gtk/Workspace.h"

#include <adwaita.h>
#include <giomm/simpleaction.h>
#include <glib-unix.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/stylecontext.h>
#include <malloc.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>

namespace tarn::gtk {

namespace {

// The engine writes local storage a moment after the last page has gone. It has no word for when it is done.
constexpr std::chrono::milliseconds farewellTime { 300 };

constexpr int largeBuffer { 1 << 20 };

// What only the start needs is free by then.
constexpr std::chrono::seconds startTime { 3 };

std::filesystem::path userDownloads()
{
    auto const* const folder = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
    return folder ? folder : g_get_home_dir();
}

GDBusConnection* busOf(Application& application)
{
    return g_application_get_dbus_connection(G_APPLICATION(application.gobj()));
}

constexpr char const* launchAction = "launch";

UpdaterManager::Configuration updateConfiguration()
{
    std::error_code error;
    auto const executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return {
        .feedURL = TARN_FEED_URL,
        .publicEDKey = TARN_PUBLIC_ED_KEY,
        .currentVersion = TARN_VERSION,
        .updatedBy = Installation::updatedBy(
            executable, [](std::string const& variable) { return g_getenv(variable.c_str()) != nullptr; }),
    };
}

}

struct Application::Ports {
    Ports(Application& application, Options const& options)
        : defaults(userDefaults(options))
        , workspace(options.applicationId, runLoop, logToSystem)
        , dockTile(application.get_dbus_connection(), options.applicationId)
        , loginItem(g_getenv("FLATPAK_ID") ? LoginItem::Road::portal : LoginItem::Road::autostartFolder,
              options.applicationId, options.configuration, defaults, runLoop, busOf(application))
        , session(busOf(application), options.applicationId, [&application] { application.terminate(); })
        , activation(application)
        , notificationCenter(application.get_dbus_connection(), options.applicationId)
        , engine(
              { .data = options.data / "Tarn" / "v2" / "WebsiteData", .cache = options.cache / "Tarn" / "WebsiteData" },
              application.m_sandbox, logToSystem, options.sessionSetUp)
        , updater({ .folder = options.cache / "Tarn" / "Updates" }, logToSystem)
    {
        notificationCenter.onActivationToken
            = [&application](std::string const& token) { Activation::setToken(application, token); };
    }

    RunLoop runLoop;
    UserDefaults defaults;
    Workspace workspace;
    DockTile dockTile;
    LoginItem loginItem;
    PowerMonitor powerMonitor;
    SessionClient session;
    Panels panels;
    NetworkMonitor networkMonitor;
    Pictures pictures;
    Activation activation;
    NotificationCenter notificationCenter;
    WebEngine engine;
    Updater updater;
};

Application::Options Application::userOptions()
{
    return {
        .applicationId = TARN_APPLICATION_ID,
        .data = g_get_user_data_dir(),
        .cache = g_get_user_cache_dir(),
        .configuration = g_get_user_config_dir(),
        .downloads = userDownloads(),
    };
}

BlankStarts Application::blankStarts(Options const& options)
{
    return BlankStarts(options.cache / "Tarn" / "blank-starts");
}

UserDefaults Application::userDefaults(Options const& options)
{
    return { options.configuration / "Tarn" / "settings.ini", logToSystem };
}

Application::Application(Options options)
    : Gtk::Application(options.applicationId)
    , m_options(std::move(options))
{
}

Application::~Application() = default;

void Application::on_startup()
{
    // Only now is this known to be the one instance; and the toolkit may be what ends it.
    blankStarts(m_options).begin();
    // Pictures of whole pages come and go: each returns to the system by itself, instead of leaving holes.
    mallopt(M_MMAP_THRESHOLD, largeBuffer);
    Gtk::Application::on_startup();
    endEmptyTheme();
    keepScrollBarsStill();
    // Closing the window only hides it.
    hold();
    // A session bus that ends takes notifications along, not half-written mail.
    if (auto const bus = get_dbus_connection())
        g_dbus_connection_set_exit_on_close(bus->gobj(), FALSE);
    auto const launch = Gio::SimpleAction::create(launchAction, LaunchMessage::type());
    launch->signal_activate().connect(
        [this](Glib::VariantBase const& message) { handle(LaunchMessage::unpack(message)); });
    add_action(launch);
    for (int const signal : { SIGTERM, SIGINT, SIGHUP }) {
        g_unix_signal_add(
            signal,
            [](gpointer self) -> gboolean {
                static_cast<Application*>(self)->terminate();
                return G_SOURCE_CONTINUE;
            },
            this);
    }

    if (m_options.prepareData)
        m_options.prepareData(m_options.data);
    m_ports = std::make_unique<Ports>(*this, m_options);
    m_delegate = std::make_unique<AppDelegate>(AppEnvironment {
        .applicationSupport = m_options.data,
        .downloads = m_options.downloads,
        .store
        = { .now = [] { return std::chrono::system_clock::now(); }, .makeUuid = &Uuid::random, .log = logToSystem },
        .engine = m_ports->engine,
        .windows = *this,
        .workspace = m_ports->workspace,
        .dockTile = m_ports->dockTile,
        .panels = m_ports->panels,
        .networkMonitor = m_ports->networkMonitor,
        .powerMonitor = m_ports->powerMonitor,
        .loginItem = m_ports->loginItem,
        .defaults = m_ports->defaults,
        .runLoop = m_ports->runLoop,
        .activation = m_ports->activation,
        .notificationCenter = &m_ports->notificationCenter,
        .updater = &m_ports->updater,
        .update = updateConfiguration(),
        .start = {
            .plan = m_options.rendering,
            .blankStarts = blankStarts(m_options),
            .restart = [this] {
                m_isToRestart = true;
                m_ports->runLoop.post([this] { terminate(); });
            },
        },
        .hostsTests = g_getenv("XCTestConfigurationFilePath") != nullptr,
        .log = logToSystem,
    });
    m_delegate->applicationWillFinishLaunching();
    // 10 MiB that the start has let go of, in pieces between what is still in use.
    m_afterStart = m_ports->runLoop.after(startTime, [] { malloc_trim(0); });
}

bool Application::local_command_line_vfunc(char**& arguments, int& exitStatus)
{
    auto const meaning = CommandLine::parse({ arguments + 1, arguments + g_strv_length(arguments) });
    exitStatus = EXIT_FAILURE;
    if (auto const* const request = std::get_if<LaunchRequest>(&meaning)) {
        try {
            // From here on this process is the only instance, or speaks to it.
            register_application();
            if (is_remote() && request->rendering == Rendering::safe)
                std::cerr << "tarn: Tarn is running already, and how it draws is chosen when it starts: safe rendering "
                             "takes effect at its next full start.\n";
            activate_action(launchAction, LaunchMessage::pack(*request));
            exitStatus = EXIT_SUCCESS;
        } catch (Glib::Error const& error) {
            std::cerr << "tarn: " << error.what() << '\n';
        }
    }
    return true;
}

void Application::handle(LaunchRequest const& request)
{
    if (!m_farewell)
        m_delegate->handle(request);
}

void Application::loadStyle()
{
    if (m_isStyled)
        return;
    m_isStyled = true;
    adw_init();
    auto const provider = Gtk::CssProvider::create();
    provider->load_from_resource("/io/github/tarn/Tarn/style.css");
    Gtk::StyleContext::add_provider_for_display(
        Gdk::Display::get_default(), provider, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    gtk_icon_theme_add_resource_path(
        gtk_icon_theme_get_for_display(gdk_display_get_default()), "/io/github/tarn/Tarn/icons");
}

void Application::terminate()
{
    if (m_farewell)
        return;
    m_delegate->applicationWillTerminate();
    m_farewell = m_ports->runLoop.after(farewellTime, [this] { quit(); });
}

std::unique_ptr<platform::WebWindow> Application::makeMainWindow(MainWindowAppearance const& appearance,
    tarn::SidebarView& sidebar, DownloadList& downloads, FindBarController& findBar, platform::MenuBar& menuBar)
{
    loadStyle();
    auto window
        = std::make_unique<MainWindow>(*this, appearance, sidebar, downloads, findBar, menuBar, windowServices());
    // Showing the window takes a while, for which the first page need not wait.
    m_sandbox.lookEarly();
    return window;
}

std::unique_ptr<platform::PopupWindow> Application::makePopupWindow(platform::WebView& view, platform::MenuBar& menuBar)
{
    return std::make_unique<PopupWindow>(*this, view, menuBar, windowServices());
}

WindowServices Application::windowServices()
{
    return {
        .pictures = m_ports->pictures,
        .spelling = m_ports->engine.spelling(),
        // From a fresh turn of the loop: the window that asks ends with it.
        .quit = [this] { m_ports->runLoop.post([this] { terminate(); }); },
    };
}

std::unique_ptr<platform::Window> Application::makeSettingsWindow(SettingsWindowController& settings)
{
    return std::make_unique<SettingsWindow>(*this, settings, windowServices());
}

}
