#pragma once

#include "Apps/GoogleApp.h"
#include "Platform/WebEngine.h"

#include <functional>
#include <map>
#include <memory>

namespace tarn {

// The web views of one profile: at most one per app, made on first use, all on the profile's data store. They live as
// long as the pool, so that a switch between apps never reloads a page.
class WebViewPool {
public:
    // The view's own set-up; runs once per view, before it loads anything.
    using Configure = std::function<void(platform::WebView&, GoogleApp)>;
    // What is installed into the pages; runs once per configuration.
    using Prepare = std::function<void(platform::UserContentController&)>;

    // The end of the engine's own user agent. It is sent unchanged to all hosts, so that the services see one current
    // browser: the engine has quirks for single hosts, which a custom agent would turn off.
    static constexpr std::string_view applicationNameForUserAgent = "Version/60.5 Safari/605.1.15";

    WebViewPool(platform::WebEngine&, std::shared_ptr<platform::WebsiteDataStore>, Configure, Prepare);
    WebViewPool(WebViewPool const&) = delete;
    WebViewPool& operator=(WebViewPool const&) = delete;

    // The app's view; the first call makes it and loads the app's home address.
    platform::WebView& view(GoogleApp);
    std::map<GoogleApp, std::unique_ptr<platform::WebView>> const& views() const { return m_views; }

    platform::WebViewConfiguration makeConfiguration() const;

private:
    platform::WebEngine& m_engine;
    std::shared_ptr<platform::WebsiteDataStore> m_dataStore;
    Configure m_configure;
    Prepare m_prepare;
    std::map<GoogleApp, std::unique_ptr<platform::WebView>> m_views;
};

}
