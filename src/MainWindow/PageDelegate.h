#pragma once

#include "MainWindow/ExternalLinks.h"
#include "MainWindow/FailedLoads.h"
#include "MainWindow/FirstPage.h"
#include "MainWindow/PageQuestions.h"
#include "MainWindow/PermissionQuestion.h"
#include "MainWindow/WebProcessRecovery.h"

#include <functional>

namespace tarn {

class DownloadManager;
class NotificationBridge;

// What all pages are served with. It outlives their views.
struct PageServices {
    DownloadManager& downloads;
    ExternalLinks& externalLinks;
    FailedLoads& failedLoads;
    FirstPage& firstPage;
    platform::Panels& panels;
    PermissionQuestion& permissions;
    WebProcessRecovery& recovery;
    // None where the application notifies nobody.
    NotificationBridge* notifications { nullptr };
    Log log;
};

// What holds for every page alike, in the app views and in popups.
class PageDelegate : public platform::NavigationDelegate, public PageQuestions {
public:
    platform::NavigationPolicy decidePolicy(platform::WebView&, platform::NavigationAction const&) final;
    platform::NavigationPolicy decidePolicy(platform::WebView&, platform::NavigationResponse const&) final;
    void didBecomeDownload(platform::WebView&, std::shared_ptr<platform::Download>) override;
    void didCommit(platform::WebView&) override;
    void didFinish(platform::WebView&) override;
    void didFail(platform::WebView&, platform::LoadFailure const&) override;
    void webContentProcessDidTerminate(platform::WebView&, platform::ProcessTermination const&) override;

    void requestPermission(platform::WebView&, platform::PermissionRequest const&, Reply<bool>) override;
    platform::PermissionState permissionState(platform::WebView&, platform::Permission) override;

protected:
    explicit PageDelegate(PageServices);
    ~PageDelegate() = default;

    // Where the page itself may go; the address can be read, and is not for saving.
    virtual platform::NavigationPolicy decideForPage(platform::WebView&, Url const&, platform::NavigationAction const&)
        = 0;
    // With the command key, or the middle button, which means "elsewhere" just as much.
    static bool isMeantForElsewhere(platform::NavigationAction const&);
    platform::WebView* decideNewWindow(platform::WebView&, platform::NavigationAction const&,
        std::function<void(Url const&)> const& ask, std::function<platform::WebView*()> const& open);
    // The function closes a window that was opened for nothing but the download.
    void adopt(std::shared_ptr<platform::Download>, std::function<void()> const& closeEmptyPopup = {});
    void openExternally(platform::WebView&, Url const&, platform::NavigationAction const&);

private:
    // The action's URL. Without one there is nothing to decide; an unreadable one is refused, with a log line.
    struct Target {
        std::optional<Url> url;
        bool isReadable { true };
    };
    Target target(platform::NavigationAction const&) const;
    // Frames go where they like on the web; to other programs they lead as their page does.
    platform::NavigationPolicy decideInFrame(platform::WebView&, Url const&, platform::NavigationAction const&);

    PageServices m_services;
};

}
