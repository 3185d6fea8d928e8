#include "MainWindow/MainWindowController.h"

#include "Bridge/BridgeScripts.h"
#include "Bridge/NotificationBridge.h"
#include "MainWindow/PrintBridge.h"
#include "MainWindow/ProfileMenu.h"
#include "Profiles/DataStoreRemoval.h"
#include "Profiles/Zoom.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace tarn {

using platform::Command;
using platform::CommandState;
using platform::WebView;

namespace {

constexpr platform::WindowFrame defaultFrame { .width = 1300, .height = 900, .maximized = false };
constexpr int minimumWidth = 700;
constexpr int minimumHeight = 500;
constexpr int sidebarWidth = 60;
constexpr char const* title = "Tarn";
constexpr char const* frameAutosaveName = "TarnMainWindow";

std::optional<GoogleApp> appForTag(int tag)
{
    if (tag < 0 || tag >= static_cast<int>(GoogleApp::allCases.size()))
        return std::nullopt;
    return GoogleApp::allCases[static_cast<std::size_t>(tag)];
}

bool uses(Profile const& profile, GoogleApp app)
{
    return std::ranges::find(profile.enabledApps, app) != profile.enabledApps.end();
}

}

MainWindowController::MainWindowController(ProfileStore& profiles, Environment environment, DataStoreFor dataStoreFor)
    : m_profiles(profiles)
    , m_environment(std::move(environment))
    , m_dataStoreFor(std::move(dataStoreFor))
    , m_frame(m_environment.defaults, m_environment.runLoop, frameAutosaveName)
    , m_unread(m_environment.dockTile, m_sidebar)
    , m_session(*this)
    , m_recovery(m_environment.runLoop, m_firstPage)
    , m_decisions(m_profiles.folder() / "Sites", m_environment.log)
    , m_externalLinks(
          m_environment.workspace, m_environment.panels, m_decisions,
          [this](WebView const& view) { return profileOf(view); }, m_environment.log)
    , m_permissions(
          m_environment.panels, m_decisions, [this](WebView const& view) { return profileOf(view); }, m_environment.log)
    , m_failedLoads(m_environment.networkMonitor, m_environment.runLoop)
    , m_linkQuestion(m_environment.panels, m_environment.log)
    , m_downloads({
          .panels = m_environment.panels,
          .defaults = m_environment.defaults,
          .dockTile = m_environment.dockTile,
          .workspace = m_environment.workspace,
          .userFolder = m_environment.downloadsFolder,
          .log = m_environment.log,
      })
    , m_navigation(pageServices(), m_session)
    , m_mailPrint(m_environment.panels)
    , m_popups(
          m_environment.runLoop,
          [this](platform::WebViewConfiguration const& configuration) {
              return std::make_unique<PopupWindowController>(
                  m_environment.engine, m_environment.windows, configuration, pageServices());
          },
          m_environment.log)
{
    if (!m_dataStoreFor)
        m_dataStoreFor = [this](Uuid const& id) { return m_environment.engine.dataStore(id); };

    m_sidebar.onSelectApp = [this](GoogleApp app) { show(app); };
    m_sidebar.onProfile = [this] { m_sidebar.popUpProfileMenu(profileMenu()); };
    m_findBar.onFocusPage = [this](WebView& view) { m_window->focus(view); };
    m_navigation.onHistoryChange = [this](WebView& view) {
        if (&view == currentView())
            m_environment.menuBar.revalidate();
    };
    m_firstPage.onShown = m_environment.onFirstPage;
    m_recovery.restartSafely = m_environment.restartSafely;
    m_navigation.onAsk = [this](Url const& url) { askWhereToOpen(url); };
    m_navigation.onPopup = [this](WebView&, platform::WebViewConfiguration const& configuration) {
        auto* const popup = m_poolProfileID ? m_popups.open(configuration, *m_poolProfileID) : nullptr;
        return popup ? &popup->webView() : nullptr;
    };
    m_popups.onAsk = [this](Url const& url) { askWhereToOpen(url); };
    m_popups.onClose = [this](WebView const& view) { m_recovery.forget(view); };
    m_failedLoads.onRetry = [this] { m_session.retry(m_window->isVisible() ? currentView() : nullptr); };
    m_linkQuestion.onNewWindow = [this](Url const& url) { openWindow(url); };
    m_linkQuestion.onDefaultBrowser = [this](Url const& url) { m_environment.workspace.open(url); };
    m_downloads.sheetWindow = [this] { return platform::SheetParent(m_window.get()); };
    if (auto* const notifications = m_environment.notifications) {
        m_downloads.onFinished
            = [notifications](std::filesystem::path const& file) { notifications->downloadFinished(file); };
        notifications->onShow = [this](WebView& view) { bringForward(view); };
    }
    startFirstPage();
    makeWindow();
    m_unread.onTitlePrefix = [this](std::string const& prefix) { m_window->setTitle(prefix + title); };
    m_profilesConnection = m_profiles.profilesDidChange.connect([this] { profilesChanged(); });
    profilesChanged();
}

MainWindowController::~MainWindowController()
{
    if (m_environment.notifications)
        m_environment.notifications->onShow = nullptr;
    m_popups.closeAll();
    m_window->setContent(nullptr);
}

void MainWindowController::startFirstPage()
{
    auto const active = m_profiles.active();
    makePool(active);
    m_pool->view(appToShow(active));
}

void MainWindowController::makeWindow()
{
    m_window = m_environment.windows.makeMainWindow(
        {
            .title = title,
            .frame = m_frame.restore(defaultFrame, minimumWidth, minimumHeight),
            .minimumWidth = minimumWidth,
            .minimumHeight = minimumHeight,
            .sidebarWidth = sidebarWidth,
        },
        m_sidebar, m_downloads.list(), m_findBar, m_environment.menuBar);
    m_window->setOnFrameChange([this](platform::WindowFrame frame) { m_frame.frameDidChange(frame); });
}

void MainWindowController::setOnManageProfiles(std::function<void()> onManageProfiles)
{
    m_onManageProfiles = std::move(onManageProfiles);
    m_environment.menuBar.replaceSubmenu(ProfileMenu::title, profileMenu());
}

platform::Menu MainWindowController::profileMenu()
{
    return ProfileMenu::make(m_profiles, m_onManageProfiles);
}

void MainWindowController::profilesChanged()
{
    auto const active = m_profiles.active();
    if (m_poolProfileID != active.id)
        rebuildPool(active);

    m_sidebar.setEnabledApps({ active.enabledApps.begin(), active.enabledApps.end() });
    m_sidebar.setProfile(active.name, m_profiles.avatarImage(active));

    show(appToShow(active));

    m_environment.menuBar.replaceSubmenu(ProfileMenu::title, profileMenu());
    m_environment.menuBar.revalidate();
}

GoogleApp MainWindowController::appToShow(Profile const& profile) const
{
    auto const ordered = profile.orderedApps();
    return uses(profile, m_current) || ordered.empty() ? m_current : ordered.front();
}

void MainWindowController::rebuildPool(Profile const& profile)
{
    m_window->setContent(nullptr);
    m_session.forgetViews();
    m_recovery.forgetViews();
    // The old views end before the new store opens: they would still write to the one that is being left.
    m_pool.reset();
    makePool(profile);
}

void MainWindowController::makePool(Profile const& profile)
{
    m_pool = std::make_unique<WebViewPool>(
        m_environment.engine, m_dataStoreFor(profile.id),
        [this](WebView& view, GoogleApp app) { configure(view, app); },
        [notifications = m_environment.notifications](platform::UserContentController& content) {
            if (notifications)
                notifications->install(content);
            PrintBridge::install(content);
            content.userScripts.push_back({
                .source = std::string(BridgeScripts::promoDismissal()),
                .injectionTime = platform::InjectionTime::documentEnd,
                .frames = platform::InjectedFrames::allFrames,
            });
        });
    m_poolProfileID = profile.id;
    m_unread.clear();
}

void MainWindowController::configure(WebView& view, GoogleApp app)
{
    view.setNavigationDelegate(&m_navigation);
    view.setUIDelegate(&m_navigation);

    auto const& zoom = m_profiles.active().zoom;
    auto const stored = zoom.find(app);
    view.setPageZoom(Zoom::snapped(stored == zoom.end() ? std::nullopt : std::optional(stored->second)));

    if (app == GoogleApp::mail)
        m_unread.watch(view);
}

void MainWindowController::show(GoogleApp app)
{
    if (!uses(m_profiles.active(), app))
        return;
    m_current = app;
    auto& view = m_pool->view(app);
    m_window->setContent(&view);
    m_window->focus(view);
    m_sidebar.setActive(app);
    m_environment.menuBar.revalidate();
    if (m_findBar.serves(view))
        return;
    m_findBar.setWebView(view);
    if (m_findBar.isVisible())
        m_findBar.hide();
}

void MainWindowController::bringForward(WebView const& view)
{
    auto const& views = m_pool->views();
    auto const shown = std::ranges::find_if(views, [&](auto const& entry) { return entry.second.get() == &view; });
    if (shown != views.end()) {
        show(shown->first);
        showWindow();
    } else if (auto* const popup = m_popups.find(view)) {
        popup->present();
    }
}

PageServices MainWindowController::pageServices()
{
    return {
        .downloads = m_downloads,
        .externalLinks = m_externalLinks,
        .failedLoads = m_failedLoads,
        .firstPage = m_firstPage,
        .panels = m_environment.panels,
        .permissions = m_permissions,
        .recovery = m_recovery,
        .notifications = m_environment.notifications,
        .log = m_environment.log,
    };
}

Uuid MainWindowController::profileOf(WebView const& view) const
{
    return m_popups.profileOf(view).value_or(m_poolProfileID.value_or(m_profiles.activeID()));
}

void MainWindowController::openWindow(Url const& url)
{
    auto* const popup = m_poolProfileID ? m_popups.open(m_pool->makeConfiguration(), *m_poolProfileID) : nullptr;
    if (!popup)
        return;
    popup->present();
    popup->webView().load({ .url = url });
}

void MainWindowController::askWhereToOpen(Url const& url)
{
    m_linkQuestion.ask(url, m_window->isVisible() ? platform::SheetParent(m_window.get()) : platform::SheetParent());
}

WebView* MainWindowController::currentView() const
{
    if (!m_pool)
        return nullptr;
    auto const view = m_pool->views().find(m_current);
    return view == m_pool->views().end() ? nullptr : view->second.get();
}

void MainWindowController::reloadApps(std::function<bool(WebView const&)> const& isWanted)
{
    for (auto const& [app, view] : m_pool->views()) {
        if (isWanted(*view))
            view->load({ .url = app.url() });
    }
}

void MainWindowController::showFind()
{
    if (auto* const view = currentView()) {
        m_findBar.setWebView(*view);
        m_findBar.show();
    }
}

void MainWindowController::printPage()
{
    auto* const view = currentView();
    if (!view)
        return;
    if (m_current == GoogleApp::mail)
        m_mailPrint.print(*view);
    else
        PrintBridge::print(*view);
}

void MainWindowController::applyZoom(std::optional<double> delta)
{
    auto* const view = currentView();
    if (!view || !m_poolProfileID)
        return;
    view->setPageZoom(delta ? Zoom::factor(Zoom::level(view->pageZoom()) + *delta) : 1.0);
    m_profiles.setZoom(view->pageZoom(), m_current, *m_poolProfileID);
}

void MainWindowController::deleteProfile(Uuid const& id, std::function<void(std::optional<std::string>)> completion)
{
    m_profiles.remove(id);
    m_popups.closeAll(id);
    m_decisions.remove(id);
    DataStoreRemoval::start(m_environment.engine, m_environment.runLoop, id, m_lifetime.guard(std::move(completion)));
}

void MainWindowController::openGmailNotificationSettings()
{
    show(GoogleApp::mail);
    auto* const view = currentView();
    if (m_current != GoogleApp::mail || !view)
        return;
    showWindow();
    auto const& home = GoogleApp(GoogleApp::mail).url();
    if (auto const url = view->url(); url && url->host() == home.host())
        view->evaluateJavaScript("location.hash = '#settings/general'");
    else
        view->load({ .url = *Url::parse(home.string() + "mail/u/0/#settings/general") });
}

bool MainWindowController::perform(Command command, int tag)
{
    auto* const view = currentView();
    switch (command) {
    case Command::showApp:
        if (auto const app = appForTag(tag))
            show(*app);
        return true;
    case Command::goBack:
        if (view)
            view->goBack();
        return true;
    case Command::goForward:
        if (view)
            view->goForward();
        return true;
    case Command::reloadPage:
        if (view)
            view->reload();
        return true;
    case Command::zoomIn:
        applyZoom(Zoom::step);
        return true;
    case Command::zoomOut:
        applyZoom(-Zoom::step);
        return true;
    case Command::actualSize:
        applyZoom(std::nullopt);
        return true;
    case Command::showFind:
        showFind();
        return true;
    case Command::findNext:
        m_findBar.find(platform::FindDirection::forward);
        return true;
    case Command::findPrevious:
        m_findBar.find(platform::FindDirection::backward);
        return true;
    case Command::printPage:
        printPage();
        return true;
    default:
        return false;
    }
}

std::optional<CommandState> MainWindowController::validate(Command command, int tag) const
{
    auto const* const view = currentView();
    switch (command) {
    case Command::showApp: {
        auto const app = appForTag(tag);
        bool const used = app && uses(m_profiles.active(), *app);
        return CommandState { .enabled = used, .checked = used && *app == m_current, .hidden = !used };
    }
    case Command::goBack:
        return CommandState { .enabled = view && view->canGoBack() };
    case Command::goForward:
        return CommandState { .enabled = view && view->canGoForward() };
    case Command::reloadPage:
    case Command::zoomIn:
    case Command::zoomOut:
    case Command::actualSize:
    case Command::showFind:
    case Command::findNext:
    case Command::findPrevious:
    case Command::printPage:
        return CommandState {};
    default:
        return std::nullopt;
    }
}

}
