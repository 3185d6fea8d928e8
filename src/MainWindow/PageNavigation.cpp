#include "MainWindow/PageNavigation.h"

#include "Apps/LinkPolicy.h"
#include "MainWindow/SessionRefresher.h"
#include "Support/Cases.h"

namespace tarn {

using platform::NavigationPolicy;

PageNavigation::PageNavigation(PageServices services, SessionRefresher& session)
    : PageDelegate(std::move(services))
    , m_session(session)
{
}

NavigationPolicy PageNavigation::decideForPage(
    platform::WebView& view, Url const& url, platform::NavigationAction const& action)
{
    bool const linkActivated = action.type == platform::NavigationType::linkActivated;
    if (linkActivated && isMeantForElsewhere(action)) {
        openExternally(view, LinkPolicy::resolvingGoogleRedirect(url), action);
        return NavigationPolicy::cancel;
    }

    return std::visit(Cases {
                          [&](LinkPolicy::Ask const& ask) {
                              if (onAsk)
                                  onAsk(ask.url);
                              return NavigationPolicy::cancel;
                          },
                          [&](LinkPolicy::OpenExternally const& open) {
                              openExternally(view, open.url, action);
                              return NavigationPolicy::cancel;
                          },
                          [](LinkPolicy::Allow const&) { return NavigationPolicy::allow; },
                      },
        LinkPolicy::navigation(
            url, view.url(), linkActivated ? LinkPolicy::LinkActivated::yes : LinkPolicy::LinkActivated::no));
}

platform::WebView* PageNavigation::createWebView(platform::WebView& view,
    platform::WebViewConfiguration const& configuration, platform::NavigationAction const& action)
{
    return decideNewWindow(view, action, onAsk, [&] { return onPopup ? onPopup(view, configuration) : nullptr; });
}

void PageNavigation::didCommit(platform::WebView& view)
{
    PageDelegate::didCommit(view);
    m_session.didCommit(view);
}

void PageNavigation::didFinish(platform::WebView& view)
{
    PageDelegate::didFinish(view);
    m_session.didFinish(view);
}

void PageNavigation::historyDidChange(platform::WebView& view)
{
    if (onHistoryChange)
        onHistoryChange(view);
}

}
