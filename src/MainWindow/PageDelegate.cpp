#include "MainWindow/PageDelegate.h"

#include "Apps/LinkPolicy.h"
#include "Bridge/NotificationBridge.h"
#include "Downloads/DownloadManager.h"
#include "Support/Cases.h"

namespace tarn {

PageDelegate::PageDelegate(PageServices services)
    : PageQuestions(services.panels, services.log)
    , m_services(std::move(services))
{
}

platform::NavigationPolicy PageDelegate::decidePolicy(platform::WebView& view, platform::NavigationAction const& action)
{
    using platform::NavigationPolicy;
    auto const [url, isReadable] = target(action);
    if (!url)
        return isReadable ? NavigationPolicy::allow : NavigationPolicy::cancel;
    if (action.shouldPerformDownload)
        return NavigationPolicy::download;
    if (action.targetFrame == platform::TargetFrame::sub)
        return decideInFrame(view, *url, action);
    return decideForPage(view, *url, action);
}

platform::NavigationPolicy PageDelegate::decidePolicy(platform::WebView&, platform::NavigationResponse const& response)
{
    return DownloadManager::shouldDownload(response) ? platform::NavigationPolicy::download
                                                     : platform::NavigationPolicy::allow;
}

void PageDelegate::didBecomeDownload(platform::WebView&, std::shared_ptr<platform::Download> download)
{
    adopt(std::move(download));
}

void PageDelegate::adopt(std::shared_ptr<platform::Download> download, std::function<void()> const& closeEmptyPopup)
{
    m_services.downloads.adopt(std::move(download), closeEmptyPopup);
}

void PageDelegate::didCommit(platform::WebView& view)
{
    pageEnded(view);
    m_services.failedLoads.didCommit(view);
}

void PageDelegate::didFinish(platform::WebView& view)
{
    m_services.firstPage.pageCame();
    if (m_services.notifications)
        m_services.notifications->pushPermission(view);
}

void PageDelegate::didFail(platform::WebView& view, platform::LoadFailure const& failure)
{
    m_services.firstPage.pageCame();
    m_services.failedLoads.didFail(view, failure);
}

void PageDelegate::webContentProcessDidTerminate(
    platform::WebView& view, platform::ProcessTermination const& termination)
{
    pageEnded(view);
    m_services.recovery.didTerminate(view, termination);
}

void PageDelegate::requestPermission(
    platform::WebView& view, platform::PermissionRequest const& request, Reply<bool> reply)
{
    m_services.permissions.ask(view, request, std::move(reply));
}

platform::PermissionState PageDelegate::permissionState(platform::WebView& view, platform::Permission permission)
{
    return m_services.permissions.state(view, permission);
}

PageDelegate::Target PageDelegate::target(platform::NavigationAction const& action) const
{
    auto url = Url::parse(action.url);
    // The engine read a URL where this side reads none: nothing that can be decided on.
    bool const isReadable = url || action.url.empty();
    if (!isReadable)
        m_services.log("[Navigation] refused an unreadable address");
    return { std::move(url), isReadable };
}

bool PageDelegate::isMeantForElsewhere(platform::NavigationAction const& action)
{
    return action.commandKey || action.button == platform::MouseButton::middle;
}

platform::NavigationPolicy PageDelegate::decideInFrame(
    platform::WebView& view, Url const& url, platform::NavigationAction const& action)
{
    if (LinkPolicy::isWebScheme(url))
        return platform::NavigationPolicy::allow;
    openExternally(view, url, action);
    return platform::NavigationPolicy::cancel;
}

platform::WebView* PageDelegate::decideNewWindow(platform::WebView& view, platform::NavigationAction const& action,
    std::function<void(Url const&)> const& ask, std::function<platform::WebView*()> const& open)
{
    auto const [url, isReadable] = target(action);
    if (!isReadable)
        return nullptr;
    if (url && action.type == platform::NavigationType::linkActivated && isMeantForElsewhere(action)) {
        openExternally(view, LinkPolicy::resolvingGoogleRedirect(*url), action);
        return nullptr;
    }
    return std::visit(Cases {
                          [&](LinkPolicy::Ask const& question) -> platform::WebView* {
                              if (ask)
                                  ask(question.url);
                              return nullptr;
                          },
                          [&](LinkPolicy::OpenExternally const& outside) -> platform::WebView* {
                              openExternally(view, outside.url, action);
                              return nullptr;
                          },
                          [&](LinkPolicy::Allow const&) { return open(); },
                      },
        LinkPolicy::popup(url, view.url()));
}

void PageDelegate::openExternally(platform::WebView& view, Url const& url, platform::NavigationAction const& action)
{
    m_services.externalLinks.open(view, url, action);
}

}
