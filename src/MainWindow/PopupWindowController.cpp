#include "MainWindow/PopupWindowController.h"

#include "Apps/LinkPolicy.h"
#include "Profiles/Zoom.h"

namespace tarn {

using platform::Command;
using platform::CommandState;
using platform::Menu;
using platform::MenuItem;
using platform::NavigationPolicy;
using platform::PageOrigin;

namespace {

// What the keys of the main menu do in such a window.
std::vector<Menu> commands()
{
    Menu menu { .title = "Window", .entries = {} };
    for (auto const command : { Command::quit, Command::closeWindow, Command::printPage, Command::goBack,
             Command::goForward, Command::reloadPage, Command::zoomIn, Command::zoomOut, Command::actualSize,
             Command::toggleFullScreen, Command::minimize })
        menu.entries.emplace_back(MenuItem { .title = {}, .action = command });
    return { std::move(menu) };
}

}

PopupWindowController::PopupWindowController(platform::WebEngine& engine, WindowFactory& windows,
    platform::WebViewConfiguration const& configuration, PageServices services)
    : PageDelegate(std::move(services))
    , m_menuBar(commands())
    , m_webView(engine.makeWebView(configuration))
    , m_window(windows.makePopupWindow(*m_webView, m_menuBar))
{
    m_menuBar.setReceivers({ this });
    m_window->setContentSize(defaultWidth, defaultHeight);
    m_window->setOnClose([this] {
        if (onClose)
            onClose();
    });
    m_webView->setNavigationDelegate(this);
    m_webView->setUIDelegate(this);
    m_webView->setOnTitleChange([this] { titleChanged(); });
    titleChanged();
}

PopupWindowController::~PopupWindowController()
{
    m_window->setOnClose(nullptr);
    m_menuBar.setReceivers({});
}

void PopupWindowController::present()
{
    m_window->present();
}

void PopupWindowController::titleChanged()
{
    m_window->setTitle(m_webView->title().value_or(""));
}

void PopupWindowController::showOrigin()
{
    using Connection = PageOrigin::Connection;
    auto const url = m_webView->url();
    if (!url)
        return;
    // A host is shown as it is resolved, in ASCII: letters of another script cannot make it look like somebody else's.
    if (!url->hasHost())
        m_window->setOrigin({ .text = url->string(), .connection = Connection::none });
    else
        m_window->setOrigin({ .text = std::string(url->host()),
            .connection = url->scheme() == "https" ? Connection::secure : Connection::insecure });
}

NavigationPolicy PopupWindowController::decideForPage(
    platform::WebView& view, Url const& url, platform::NavigationAction const& action)
{
    if (!LinkPolicy::isWebScheme(url)) {
        openExternally(view, url, action);
        return NavigationPolicy::cancel;
    }
    if (action.type != platform::NavigationType::linkActivated)
        return NavigationPolicy::allow;
    if (!isMeantForElsewhere(action) && LinkPolicy::isInternal(url))
        return NavigationPolicy::allow;
    openExternally(view, LinkPolicy::resolvingGoogleRedirect(url), action);
    return NavigationPolicy::cancel;
}

void PopupWindowController::didBecomeDownload(platform::WebView&, std::shared_ptr<platform::Download> download)
{
    adopt(
        std::move(download), m_hasShownPage ? std::function<void()> {} : [this] { close(); });
}

void PopupWindowController::didCommit(platform::WebView& view)
{
    PageDelegate::didCommit(view);
    m_hasShownPage = true;
    showOrigin();
}

void PopupWindowController::historyDidChange(platform::WebView&)
{
    m_menuBar.revalidate();
}

platform::WebView* PopupWindowController::createWebView(platform::WebView& view,
    platform::WebViewConfiguration const& configuration, platform::NavigationAction const& action)
{
    return decideNewWindow(view, action, onAsk, [&] { return onPopup ? onPopup(configuration) : nullptr; });
}

void PopupWindowController::readyToShow(platform::WebView&, platform::WindowFeatures const& features)
{
    if (m_window->isVisible())
        return;
    m_window->setContentSize(features.width.value_or(defaultWidth), features.height.value_or(defaultHeight));
    present();
}

void PopupWindowController::didClose(platform::WebView&)
{
    close();
}

bool PopupWindowController::perform(Command command, int)
{
    auto const zoom
        = [&](double delta) { m_webView->setPageZoom(Zoom::factor(Zoom::level(m_webView->pageZoom()) + delta)); };
    switch (command) {
    case Command::closeWindow:
        close();
        return true;
    case Command::printPage:
        m_webView->print();
        return true;
    case Command::goBack:
        m_webView->goBack();
        return true;
    case Command::goForward:
        m_webView->goForward();
        return true;
    case Command::reloadPage:
        m_webView->reload();
        return true;
    case Command::zoomIn:
        zoom(Zoom::step);
        return true;
    case Command::zoomOut:
        zoom(-Zoom::step);
        return true;
    case Command::actualSize:
        m_webView->setPageZoom(1.0);
        return true;
    default:
        return false;
    }
}

std::optional<CommandState> PopupWindowController::validate(Command command, int) const
{
    switch (command) {
    case Command::goBack:
        return CommandState { .enabled = m_webView->canGoBack() };
    case Command::goForward:
        return CommandState { .enabled = m_webView->canGoForward() };
    case Command::closeWindow:
    case Command::printPage:
    case Command::reloadPage:
    case Command::zoomIn:
    case Command::zoomOut:
    case Command::actualSize:
        return CommandState {};
    default:
        return std::nullopt;
    }
}

}
