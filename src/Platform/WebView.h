#pragma once

#include "Platform/NavigationDelegate.h"
#include "Platform/UIDelegate.h"
#include "Support/Url.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarn::platform {

struct UrlRequest {
    Url url;
    // How long the server may stay silent before the load is given up.
    std::chrono::seconds timeout { 60 };
};

// A calm page of the application's own, shown in place of a web page that cannot be shown.
struct PageNotice {
    std::string title;
    std::string text;
    std::string button;
    std::function<void()> onButton;
    // Beside it, less prominent; none without a title.
    std::string secondButton {};
    std::function<void()> onSecondButton {};
};

enum class FindDirection { forward, backward };

struct FindOptions {
    FindDirection direction { FindDirection::forward };
    bool matchCase { false };
    // Past the end of the page, on from its start.
    bool wraps { true };
};

// One web page area. Its identity is its address. The delegates must outlive it.
class WebView {
public:
    WebView() = default;
    WebView(WebView const&) = delete;
    WebView& operator=(WebView const&) = delete;
    virtual ~WebView() = default;

    // Empty once the view is gone. Never to be kept locked.
    std::weak_ptr<WebView> weak() const { return m_self; }

    virtual void setNavigationDelegate(NavigationDelegate*) = 0;
    virtual void setUIDelegate(UIDelegate*) = 0;
    virtual void setOnTitleChange(std::function<void()>) = 0;

    virtual void load(UrlRequest const&) = 0;
    virtual void reload() = 0;
    virtual void goBack() = 0;
    virtual void goForward() = 0;
    virtual bool canGoBack() const = 0;
    virtual bool canGoForward() const = 0;

    // The page shown, or the one being loaded for the first time.
    virtual std::optional<Url> url() const = 0;
    // The page's own text: any length, any character.
    virtual std::optional<std::string> title() const = 0;

    // Factor; 1.0 is 100 %.
    virtual double pageZoom() const = 0;
    virtual void setPageZoom(double factor) = 0;

    // Runs in the page's main frame. The completion gets the result as JSON text; nothing on an error, or when the
    // result has no such text. It is called once, or never when the view ends before.
    virtual void evaluateJavaScript(
        std::string const& source, std::function<void(std::optional<std::string>)> completion)
        = 0;
    // The result and errors are ignored.
    void evaluateJavaScript(std::string const& source) { evaluateJavaScript(source, {}); }

    // Marks the next match, seen from what is marked now, and scrolls to it. While the text is being typed, the match
    // that is marked may be the next one too. The completion says whether there is one; it is called once, or never
    // when the view ends before.
    virtual void find(std::string const& text, FindOptions const&, std::function<void(bool found)> completion) = 0;
    // Takes the marks away.
    virtual void endFind() = 0;

    // Lets the user choose how the page is printed. Nothing while that goes on already.
    virtual void print() = 0;

    // Covers the page with the notice, or uncovers it. A load or reload uncovers it too.
    virtual void showNotice(std::optional<PageNotice>) = 0;

private:
    // Owns nothing: it only ends with the view.
    std::shared_ptr<WebView> m_self { this, [](WebView*) {} };
};

}
