#pragma once

#include "Platform/WebView.h"

#include <string>
#include <vector>

namespace tarn::test {

// A web view without pages: it records what it is told, and the test plays the engine.
class FakeWebView final : public platform::WebView {
public:
    void setNavigationDelegate(platform::NavigationDelegate* delegate) override { navigationDelegate = delegate; }
    void setUIDelegate(platform::UIDelegate* delegate) override { uiDelegate = delegate; }
    void setOnTitleChange(std::function<void()> callback) override { onTitleChange = std::move(callback); }

    void load(platform::UrlRequest const& request) override
    {
        events.push_back("load " + request.url.string());
        timeout = request.timeout;
        currentNotice.reset();
        pending = { request.url, static_cast<int>(history.size()) };
    }
    void reload() override
    {
        events.emplace_back("reload");
        currentNotice.reset();
        if (currentUrl)
            pending = { *currentUrl, position };
    }
    void goBack() override
    {
        events.emplace_back("back");
        if (canGoBack())
            pending = { history[static_cast<std::size_t>(position - 1)], position - 1 };
    }
    void goForward() override
    {
        events.emplace_back("forward");
        if (canGoForward())
            pending = { history[static_cast<std::size_t>(position + 1)], position + 1 };
    }
    bool canGoBack() const override { return position > 0; }
    bool canGoForward() const override { return position + 1 < static_cast<int>(history.size()); }
    std::optional<Url> url() const override
    {
        return !currentUrl && pending ? std::optional(pending->url) : currentUrl;
    }
    std::optional<std::string> title() const override { return currentTitle; }
    double pageZoom() const override { return zoom; }
    void setPageZoom(double factor) override { zoom = factor; }
    void evaluateJavaScript(
        std::string const& source, std::function<void(std::optional<std::string>)> completion) override
    {
        events.push_back("script " + source);
        scriptCompletion = std::move(completion);
    }
    void find(
        std::string const& text, platform::FindOptions const& options, std::function<void(bool)> completion) override
    {
        auto const backward = options.direction == platform::FindDirection::backward;
        events.push_back((backward ? "find backward " : "find ") + text);
        findOptions = options;
        findCompletion = std::move(completion);
    }
    void endFind() override { events.emplace_back("end find"); }
    void print() override { events.emplace_back("print"); }
    void showNotice(std::optional<platform::PageNotice> notice) override { currentNotice = std::move(notice); }

    // The engine's side.

    // Carries out the load that waits, as far as the delegate allows.
    void arrive()
    {
        auto const load = std::exchange(pending, std::nullopt);
        if (!load || decide({ .url = load->url.string() }) == platform::NavigationPolicy::cancel)
            return;
        position = load->position;
        history.resize(std::max(history.size(), static_cast<std::size_t>(position) + 1), load->url);
        visit(load->url.string().c_str());
        setTitle("Page");
    }
    void commit(char const* url)
    {
        currentUrl = Url::parse(url);
        currentNotice.reset();
        navigationDelegate->didCommit(*this);
    }
    void finish() { navigationDelegate->didFinish(*this); }
    void visit(char const* url)
    {
        commit(url);
        finish();
    }
    void setTitle(std::string const& title)
    {
        currentTitle = title;
        if (onTitleChange)
            onTitleChange();
    }
    void terminate(platform::ProcessTermination const& termination = {})
    {
        navigationDelegate->webContentProcessDidTerminate(*this, termination);
    }
    platform::NavigationPolicy decide(platform::NavigationAction const& action)
    {
        return navigationDelegate->decidePolicy(*this, action);
    }

    struct Load {
        Url url;
        int position;
    };
    platform::NavigationDelegate* navigationDelegate { nullptr };
    platform::UIDelegate* uiDelegate { nullptr };
    std::function<void()> onTitleChange;
    // Of the last call.
    std::function<void(std::optional<std::string>)> scriptCompletion;
    platform::FindOptions findOptions;
    std::function<void(bool)> findCompletion;
    std::vector<std::string> events;
    std::chrono::seconds timeout { 0 };
    std::optional<Url> currentUrl;
    std::optional<std::string> currentTitle;
    std::optional<platform::PageNotice> currentNotice;
    double zoom { 1.0 };
    std::optional<Load> pending;
    std::vector<Url> history;
    int position { -1 };
};

}
