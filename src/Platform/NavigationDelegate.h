#pragma once

#include <memory>
#include <optional>
#include <string>

namespace tarn::platform {

class Download;
class WebView;

enum class NavigationPolicy { cancel, allow, download };
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
    // The link says of itself that what it leads to is to be saved.
    bool shouldPerformDownload { false };
};

// The head of a server's answer, before its content is taken.
struct NavigationResponse {
    std::string url;
    bool canShowMimeType { true };
    // Of an HTTP answer: the header of that name, if it has one.
    std::optional<std::string> contentDisposition {};
};

// Why a page could not be loaded.
struct LoadFailure {
    enum class Kind {
        nameNotFound,
        cannotConnect,
        timedOut,
        // The server's certificate cannot be trusted.
        notSecure,
        other,
    };
    std::string url;
    Kind kind { Kind::other };
    // In words of the engine; they are shown for "other" only.
    std::string reason {};
};

// How the process that ran a page ended.
struct ProcessTermination {
    enum class Reason {
        crashed,
        exceededMemoryLimit,
        // Page processes cannot run on this system at all; the explanation says what is missing and how to allow it.
        cannotStart,
    };
    Reason reason { Reason::crashed };
    std::string explanation {};
};

// What a web view asks and tells its owner while it loads pages.
class NavigationDelegate {
public:
    virtual NavigationPolicy decidePolicy(WebView&, NavigationAction const&) { return NavigationPolicy::allow; }
    virtual NavigationPolicy decidePolicy(WebView&, NavigationResponse const&) { return NavigationPolicy::allow; }
    // What was decided to be a download, or what the engine itself makes one. It ends when nobody keeps it.
    virtual void didBecomeDownload(WebView&, std::shared_ptr<Download>) { }
    virtual void didCommit(WebView&) { }
    virtual void didFinish(WebView&) { }
    // The main frame's page did not come. What was shown before may still be shown.
    virtual void didFail(WebView&, LoadFailure const&) { }
    // Where it can go back or forward to has changed.
    virtual void historyDidChange(WebView&) { }
    // The process that ran the page is gone, and the page with it.
    virtual void webContentProcessDidTerminate(WebView&, ProcessTermination const&) { }

protected:
    ~NavigationDelegate() = default;
};

}
