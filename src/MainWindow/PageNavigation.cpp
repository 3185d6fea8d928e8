#include "MainWindow/PageNavigation.h"

#include "Apps/LinkPolicy.h"
#include "MainWindow/SessionRefresher.h"
#include "MainWindow/WebProcessRecovery.h"
#include "Support/Cases.h"

#include <algorithm>
#include <array>

namespace tarn {

using platform::NavigationPolicy;

PageNavigation::PageNavigation(
    platform::Workspace& workspace, SessionRefresher& session, WebProcessRecovery& recovery, Log log)
    : m_workspace(workspace)
    , m_session(session)
    , m_recovery(recovery)
    , m_log(std::move(log))
{
}

NavigationPolicy PageNavigation::decidePolicy(platform::WebView& view, platform::NavigationAction const& action)
{
    if (action.url.empty())
        return NavigationPolicy::allow;
    if (action.targetFrame == platform::TargetFrame::sub)
        return NavigationPolicy::allow;

    auto const url = Url::parse(action.url);
    if (!url) {
        // The engine read a URL where this side reads none: nothing that can be decided on.
        m_log("[Navigation] refused an unreadable address");
        return NavigationPolicy::cancel;
    }

    bool const linkActivated = action.type == platform::NavigationType::linkActivated;
    // The middle button means "elsewhere" as much as the command key does.
    if (linkActivated && (action.commandKey || action.button == platform::MouseButton::middle)) {
        openExternally(LinkPolicy::resolvingGoogleRedirect(*url), action);
        return NavigationPolicy::cancel;
    }

    return std::visit(Cases {
                          [&](LinkPolicy::Ask const& ask) {
                              if (onAsk)
                                  onAsk(ask.url);
                              return NavigationPolicy::cancel;
                          },
                          [&](LinkPolicy::OpenExternally const& open) {
                              openExternally(open.url, action);
                              return NavigationPolicy::cancel;
                          },
                          [](LinkPolicy::Allow const&) { return NavigationPolicy::allow; },
                      },
        LinkPolicy::navigation(
            *url, view.url(), linkActivated ? LinkPolicy::LinkActivated::yes : LinkPolicy::LinkActivated::no));
}

void PageNavigation::requestNewWindow(platform::WebView& view, platform::NavigationAction const& action)
{
    auto const url = Url::parse(action.url);
    if (!url && !action.url.empty()) {
        m_log("[Navigation] refused an unreadable address");
        return;
    }
    std::visit(Cases {
                   [&](LinkPolicy::Ask const& ask) {
                       if (onAsk)
                           onAsk(ask.url);
                   },
                   [&](LinkPolicy::OpenExternally const& open) { openExternally(open.url, action); },
                   [](LinkPolicy::Allow const&) {},
               },
        LinkPolicy::popup(url, view.url()));
}

void PageNavigation::openExternally(Url const& url, platform::NavigationAction const& action)
{
    // Outside the page that they stand in, these are a program, a file of the user's, or nothing.
    static constexpr std::array<std::string_view, 6> notForOthers { "about", "blob", "data", "file", "javascript",
        "view-source" };
    bool const isHttp = url.scheme() == "https" || url.scheme() == "http";
    if (std::ranges::find(notForOthers, url.scheme()) != notForOthers.end())
        m_log("[Navigation] refused to hand over a \"" + std::string(url.scheme()) + "\" address");
    else if (!isHttp && !action.userGesture)
        // A page may not start programs behind the user's back.
        m_log("[Navigation] refused a \"" + std::string(url.scheme()) + "\" address that no one clicked");
    else
        m_workspace.open(url);
}

void PageNavigation::didCommit(platform::WebView& view)
{
    m_session.didCommit(view);
}

void PageNavigation::didFinish(platform::WebView& view)
{
    if (onFinish)
        onFinish(view);
    m_session.didFinish(view);
}

void PageNavigation::historyDidChange(platform::WebView& view)
{
    if (onHistoryChange)
        onHistoryChange(view);
}

void PageNavigation::didFail(platform::WebView& view, platform::LoadFailure const& failure)
{
    auto const url = Url::parse(failure.url);
    view.showNotice(platform::PageNotice {
        .title = "This Page Could Not Be Loaded",
        .text = failure.reason + "\n" + failure.url,
        .button = "Retry",
        .onButton =
            [&view, url] {
                if (url)
                    view.load({ .url = *url });
                else
                    view.reload();
            },
    });
}

void PageNavigation::webContentProcessDidTerminate(
    platform::WebView& view, platform::ProcessTermination const& termination)
{
    m_recovery.didTerminate(view, termination);
}

}
