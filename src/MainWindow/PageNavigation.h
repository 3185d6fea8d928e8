#pragma once

#include "MainWindow/PageDelegate.h"

#include <functional>

namespace tarn {

class SessionRefresher;

// Decides where the pages of the apps may go, and acts on it.
class PageNavigation final : public PageDelegate {
public:
    PageNavigation(PageServices, SessionRefresher&);

    // A link into another Google app: the user is to say where it opens.
    std::function<void(Url const&)> onAsk;
    // Makes a window and returns its view; none when there is to be no window.
    std::function<platform::WebView*(platform::WebView& opener, platform::WebViewConfiguration const&)> onPopup;
    std::function<void(platform::WebView&)> onHistoryChange;

    void didCommit(platform::WebView&) override;
    void didFinish(platform::WebView&) override;
    void historyDidChange(platform::WebView&) override;

    platform::WebView* createWebView(
        platform::WebView&, platform::WebViewConfiguration const&, platform::NavigationAction const&) override;

private:
    platform::NavigationPolicy decideForPage(
        platform::WebView&, Url const&, platform::NavigationAction const&) override;
    SessionRefresher& m_session;
};

}
