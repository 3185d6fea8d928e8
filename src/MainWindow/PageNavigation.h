#pragma once

#include "Platform/NavigationDelegate.h"
#include "Platform/UIDelegate.h"
#include "Platform/WebView.h"
#include "Platform/Workspace.h"
#include "Support/Log.h"

#include <functional>

namespace tarn {

class SessionRefresher;
class WebProcessRecovery;

// Decides where the pages of the apps may go, and acts on it.
class PageNavigation final : public platform::NavigationDelegate, public platform::UIDelegate {
public:
    PageNavigation(platform::Workspace&, SessionRefresher&, WebProcessRecovery&, Log);

    // A link into another Google app: the user is to say where it opens.
    std::function<void(Url const&)> onAsk;
    std::function<void(platform::WebView&)> onHistoryChange;
    // A page has loaded.
    std::function<void(platform::WebView&)> onFinish;

    platform::NavigationPolicy decidePolicy(platform::WebView&, platform::NavigationAction const&) override;
    void didCommit(platform::WebView&) override;
    void didFinish(platform::WebView&) override;
    void historyDidChange(platform::WebView&) override;
    void didFail(platform::WebView&, platform::LoadFailure const&) override;
    void webContentProcessDidTerminate(platform::WebView&, platform::ProcessTermination const&) override;

    void requestNewWindow(platform::WebView&, platform::NavigationAction const&) override;

private:
    void openExternally(Url const&, platform::NavigationAction const&);

    platform::Workspace& m_workspace;
    SessionRefresher& m_session;
    WebProcessRecovery& m_recovery;
    Log m_log;
};

}
