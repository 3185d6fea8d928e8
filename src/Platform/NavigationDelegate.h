#pragma once

#include <string>

namespace tarn::platform {

class WebView;

enum class NavigationPolicy { cancel, allow };
enum class NavigationType { linkActivated, other };
enum class TargetFrame { main, sub };
enum class MouseButton { none, primary, middle, secondary };

struct NavigationAction {
    // As the engine serialised it; empty when the request has none.
    std::string url;
    NavigationType type { NavigationType::other };
    TargetFrame targetFrame { TargetFrame::main };
    // The platform's command key (Ctrl on Linux) was held.
    bool commandKey { false };
    MouseButton button { MouseButton::none };
    // The user did something (a click, a key) that led to this.
    bool userGesture { false };
};

// What a web view asks and tells its owner while it loads pages.
class NavigationDelegate {
public:
    virtual NavigationPolicy decidePolicy(WebView&, NavigationAction const&) { return NavigationPolicy::allow; }
    virtual void didCommit(WebView&) { }
    virtual void didFinish(WebView&) { }
    // Where it can go back or forward to has changed.
    virtual void historyDidChange(WebView&) { }
    // The process that ran the page is gone, and the page with it.
    virtual void webContentProcessDidTerminate(WebView&) { }

protected:
    ~NavigationDelegate() = default;
};

}
