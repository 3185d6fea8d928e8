#pragma once

#include "Platform/NavigationDelegate.h"
#include "Platform/Permission.h"
#include "Support/Reply.h"

#include <optional>

namespace tarn::platform {

struct WebViewConfiguration;

// What the page asked for its new window, in points; absent where it asked for nothing.
struct WindowFeatures {
    std::optional<int> width {};
    std::optional<int> height {};
};

// What a page asks for that is outside its own view.
class UIDelegate {
public:
    // The page wants the action's URL in a new window. The view that is returned, made with the configuration unchanged
    // and owned by the delegate, gets the URL loaded into it; with none the page gets null. What the new window is to
    // look like comes later, to the new view's own delegate.
    virtual WebView* createWebView(WebView&, WebViewConfiguration const&, NavigationAction const&) { return nullptr; }
    // The new view's window is to be shown now. May come more than once.
    virtual void readyToShow(WebView&, WindowFeatures const&) { }
    // The page closed its window.
    virtual void didClose(WebView&) { }

    // A dropped reply means no.
    virtual void requestPermission(WebView&, PermissionRequest const&, Reply<bool>) { }
    // What such a request would be answered now.
    virtual PermissionState permissionState(WebView&, Permission) { return PermissionState::ask; }

protected:
    ~UIDelegate() = default;
};

}
