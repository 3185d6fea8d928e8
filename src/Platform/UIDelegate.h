#pragma once

#include "Platform/NavigationDelegate.h"
#include "Platform/Permission.h"
#include "Support/Reply.h"

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarn::platform {

struct WebViewConfiguration;

// What the page asked for its new window, in points; absent where it asked for nothing.
struct WindowFeatures {
    std::optional<int> width {};
    std::optional<int> height {};
};

// What a page's file input takes.
struct OpenPanelParameters {
    bool allowsMultipleSelection { false };
    bool allowsDirectories { false };
};

// What a page asks for that is outside its own view. While a script's dialog waits for its answer the page stands
// still, and with it the pages that share its process. A dropped reply is the answer of a user who turned away.
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

    virtual void runJavaScriptAlert(WebView&, std::string const& /*message*/, Reply<std::monostate>) { }
    virtual void runJavaScriptConfirm(WebView&, std::string const& /*message*/, Reply<bool>) { }
    virtual void runJavaScriptTextInput(WebView&, std::string const& /*prompt*/,
        std::optional<std::string> const& /*defaultText*/, Reply<std::optional<std::string>>)
    {
    }
    // The page would like to be left only if the user agrees.
    virtual void runBeforeUnloadConfirm(WebView&, Reply<bool>) { }
    // No file: the input stays as it is.
    virtual void runOpenPanel(WebView&, OpenPanelParameters const&, Reply<std::vector<std::filesystem::path>>) { }

    // What the user wanted printed was not; the reason in plain words of the platform.
    virtual void didFailToPrint(WebView&, std::string const& /*reason*/) { }

protected:
    ~UIDelegate() = default;
};

}
