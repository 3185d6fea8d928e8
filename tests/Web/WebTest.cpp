#include "Web/WebTest.h"

#include "Platform/Gtk/MainWindow.h"
#include "Platform/Gtk/PopupWindow.h"
#include "Platform/Gtk/Renderers.h"
#include "Platform/Gtk/SettingsWindow.h"

#include <adwaita.h>
#include <gdk/x11/gdkx.h>
#include <glibmm/main.h>

#include <array>
#include <csignal>
#include <fstream>
#include <optional>
#include <sstream>

namespace tarn::test {

namespace {

// A test that waits this long has failed; no test waits for it.
constexpr std::chrono::seconds patience { 60 };

Glib::RefPtr<Gtk::Application> application()
{
    static auto const instance = [] {
        gtk::chooseRenderers(Rendering::detected);
        g_set_prgname(TARN_APPLICATION_ID);
        auto made = Gtk::Application::create(TARN_APPLICATION_ID ".Test", Gio::Application::Flags::NON_UNIQUE);
        made->register_application();
        adw_init();
        return made;
    }();
    return instance;
}

void run(std::string const& command)
{
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("failed: " + command);
}

}

WebTest::WebTest(stage::SignIn signIn)
    : stage(stage::StageServer::defaultServices(), { .logFile = std::nullopt, .signIn = signIn })
    , m_application(application())
    , activation(*m_application)
{
    // The toolkit notices much that goes wrong in memory, and goes on.
    g_log_set_handler(
        "Gtk", G_LOG_LEVEL_CRITICAL,
        [](char const* from, GLogLevelFlags, char const* message, gpointer) {
            ADD_FAILURE() << from << ": " << message;
        },
        nullptr);
}

WebTest::~WebTest()
{
    if (delegate)
        terminate();
}

void WebTest::startEngine(gtk::Sandbox& pageSandbox)
{
    engine = std::make_unique<gtk::WebEngine>(
        gtk::WebEngine::Folders { .data = folder.path() / "data", .cache = folder.path() / "cache" }, pageSandbox,
        [this](std::string const& line) { log.push_back(line); },
        [this](WebKitNetworkSession* session) {
            // A test may have a server of its own on this computer.
            static constexpr std::array<char const*, 2> direct { "127.0.0.1", nullptr };
            auto* const proxy = webkit_network_proxy_settings_new(proxyUri.c_str(), direct.data());
            webkit_network_session_set_proxy_settings(session, WEBKIT_NETWORK_PROXY_MODE_CUSTOM, proxy);
            webkit_network_proxy_settings_free(proxy);
            webkit_network_session_set_tls_errors_policy(session, WEBKIT_TLS_ERRORS_POLICY_IGNORE);
        });
}

void WebTest::launch(gtk::Sandbox& pageSandbox)
{
    startEngine(pageSandbox);
    delegate = std::make_unique<AppDelegate>(AppEnvironment {
        .applicationSupport = folder.path(),
        .downloads = folder.path() / "Downloads",
        .store = { .now = [] { return std::chrono::system_clock::now(); },
            .makeUuid = &Uuid::random,
            .log = [this](std::string const& line) { log.push_back(line); } },
        .engine = *engine,
        .windows = *this,
        .workspace = workspace,
        .dockTile = dockTile,
        .panels = *desktopPanels,
        .networkMonitor = networkMonitor,
        .powerMonitor = powerMonitor,
        .loginItem = loginItem,
        .defaults = defaults,
        .runLoop = runLoop,
        .activation = activation,
        .notificationCenter = notificationCenter.get(),
        .log = [this](std::string const& line) { log.push_back(line); },
    });
    delegate->applicationWillFinishLaunching();
    delegate->applicationDidFinishLaunching();
}

void WebTest::terminate()
{
    delegate->applicationWillTerminate();
    // What the application itself grants the engine for its last writes.
    bool over = false;
    auto const timer = runLoop.after(std::chrono::milliseconds(300), [&] { over = true; });
    waitUntil([&] { return over; }, "the end");
    delegate.reset();
    engine.reset();
}

std::unique_ptr<platform::WebWindow> WebTest::makeMainWindow(MainWindowAppearance const& appearance,
    tarn::SidebarView& sidebar, DownloadList& downloads, FindBarController& findBar, platform::MenuBar& menuBar)
{
    return std::make_unique<gtk::MainWindow>(
        *m_application, appearance, sidebar, downloads, findBar, menuBar, windowServices());
}

std::unique_ptr<platform::PopupWindow> WebTest::makePopupWindow(platform::WebView& view, platform::MenuBar& menuBar)
{
    popups.push_back(static_cast<gtk::WebView*>(&view));
    return std::make_unique<gtk::PopupWindow>(*m_application, view, menuBar, windowServices());
}

gtk::WindowServices WebTest::windowServices()
{
    return { .pictures = pictures, .spelling = engine->spelling(), .quit = [] {} };
}

std::unique_ptr<platform::Window> WebTest::makeSettingsWindow(SettingsWindowController& settings)
{
    return std::make_unique<gtk::SettingsWindow>(*m_application, settings, windowServices());
}

Gtk::ApplicationWindow& WebTest::window()
{
    return dynamic_cast<Gtk::ApplicationWindow&>(gtk::nativeOf(controller().window()));
}

std::filesystem::path WebTest::dataFolder(Uuid const& profile) const
{
    return folder.path() / "data" / profile.string();
}

std::filesystem::path WebTest::cacheFolder(Uuid const& profile) const
{
    return folder.path() / "cache" / profile.string();
}

void WebTest::waitUntil(std::function<bool()> const& condition, std::string const& what)
{
    bool late = false;
    auto const timer = runLoop.after(patience, [&] { late = true; });
    // Conditions may hang on another process: a slow tick looks again where no event would.
    auto const tick = Glib::signal_timeout().connect([] { return true; }, 20);
    while (!condition() && !late)
        g_main_context_iteration(nullptr, TRUE);
    auto stop = tick;
    stop.disconnect();
    if (late && !condition())
        ADD_FAILURE() << "waited in vain: " << what;
}

void WebTest::open(GoogleApp app)
{
    controller().show(app);
    waitForPage(app);
}

void WebTest::waitForPage(GoogleApp app)
{
    auto& page = view(app);
    waitUntil(
        [&] {
            return page.url() && page.url()->host() == app.url().host() && page.title() && !page.title()->empty()
                && !webkit_web_view_is_loading(page.engineView());
        },
        "page of " + std::string(app.title()));
}

Gtk::Window& WebTest::windowOf(gtk::WebView& page)
{
    return dynamic_cast<Gtk::Window&>(*page.widget().get_root());
}

gtk::WebView& WebTest::waitForPopup(std::size_t number, std::string const& host)
{
    waitUntil([&] { return popups.size() == number; }, "popup");
    auto& popup = *popups.at(number - 1);
    waitUntil(
        [&] {
            return popup.url() && popup.url()->host() == host && popup.title().value_or("") != ""
                && !webkit_web_view_is_loading(popup.engineView()) && windowOf(popup).is_active();
        },
        "page of " + host + " in a popup");
    return popup;
}

std::string WebTest::evaluate(gtk::WebView& page, std::string const& expression)
{
    std::optional<std::string> result;
    auto const body = "return String(await (" + expression + "));";
    webkit_web_view_call_async_javascript_function(
        page.engineView(), body.c_str(), -1, nullptr, nullptr, nullptr, nullptr,
        [](GObject* object, GAsyncResult* answer, gpointer data) {
            GError* error = nullptr;
            auto* value
                = webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(object), answer, &error);
            g_autofree char* text
                = value ? jsc_value_to_string(value) : g_strconcat("error: ", error->message, nullptr);
            *static_cast<std::optional<std::string>*>(data) = text;
            g_clear_object(&value);
            g_clear_error(&error);
        },
        &result);
    waitUntil([&] { return result.has_value(); }, "result of " + expression);
    return result.value_or("");
}

int WebTest::requestCount(std::string const& host, std::string const& path) const
{
    return static_cast<int>(std::ranges::count_if(
        stage.requests(), [&](auto const& request) { return request.host == host && request.path == path; }));
}

void WebTest::click(gtk::WebView& page, std::string const& selector, std::string const& arguments)
{
    auto const place = evaluate(page,
        "(async () => { const e = document.querySelector('" + selector
            + "'); e.scrollIntoView({ block: 'center' }); await new Promise(r => requestAnimationFrame(() => "
              "requestAnimationFrame(r))); const b = e.getBoundingClientRect(); return (b.left + b.width / 2) + ' ' + "
              "(b.top + b.height / 2); })()");
    std::istringstream numbers(place);
    double x = 0;
    double y = 0;
    ASSERT_TRUE(numbers >> x >> y) << selector << ": " << place;
    clickAt(*Glib::wrap(GTK_WIDGET(page.engineView())), x, y, arguments);
}

void WebTest::clickAt(Gtk::Widget& widget, double x, double y, std::string const& arguments)
{
    auto* const native = widget.get_native();
    waitUntil([&] { return widget.get_mapped(); }, "widget on the screen");
    double windowX = 0;
    double windowY = 0;
    ASSERT_TRUE(widget.translate_coordinates(*dynamic_cast<Gtk::Widget*>(native), x, y, windowX, windowY));
    double surfaceX = 0;
    double surfaceY = 0;
    native->get_surface_transform(surfaceX, surfaceY);
    auto const xid = gdk_x11_surface_get_xid(GDK_SURFACE(native->get_surface()->gobj()));
    run("xdotool mousemove --window " + std::to_string(xid) + " " + std::to_string(std::lround(windowX + surfaceX))
        + " " + std::to_string(std::lround(windowY + surfaceY)) + " " + arguments);
}

void WebTest::press(std::string const& keys)
{
    run("xdotool key --clearmodifiers " + keys);
}

void WebTest::type(std::string const& text)
{
    run("xdotool type --delay 20 '" + text + "'");
}

std::string WebTest::read(std::filesystem::path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), {} };
}

bool WebTest::holds(std::filesystem::path const& folder, std::string const& text)
{
    for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().string().find(text) != std::string::npos
            || (entry.is_regular_file() && read(entry.path()).find(text) != std::string::npos))
            return true;
    }
    return false;
}

void killWebProcesses()
{
    killEngineProcesses("WebKitWebProces");
}

void killEngineProcesses(std::string const& wanted)
{
    // Found by their name among our own descendants: the sandbox puts two processes in between.
    auto const parentOf = [](std::string const& pid) {
        auto const status = [&] {
            std::ifstream stream("/proc/" + pid + "/status");
            return std::string { std::istreambuf_iterator<char>(stream), {} };
        }();
        auto const at = status.find("\nPPid:\t");
        return at == std::string::npos ? std::string("0") : status.substr(at + 7, status.find('\n', at + 7) - at - 7);
    };
    auto const own = std::to_string(getpid());
    for (auto const& entry : std::filesystem::directory_iterator("/proc")) {
        auto const pid = entry.path().filename().string();
        if (pid.find_first_not_of("0123456789") != std::string::npos)
            continue;
        std::ifstream stream(entry.path() / "comm");
        std::string name;
        std::getline(stream, name);
        if (name != wanted)
            continue;
        auto ancestor = pid;
        while (ancestor != own && ancestor != "0" && ancestor != "1" && !ancestor.empty())
            ancestor = parentOf(ancestor);
        if (ancestor == own)
            kill(std::stoi(pid), SIGKILL);
    }
}

}
