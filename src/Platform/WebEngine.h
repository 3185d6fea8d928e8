#pragma once

#include "Platform/WebView.h"
#include "Platform/WebViewConfiguration.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarn::platform {

// Makes everything of the web.
class WebEngine {
public:
    virtual ~WebEngine() = default;

    // The persistent store of that identifier: always the same one, across launches.
    virtual std::shared_ptr<WebsiteDataStore> dataStore(Uuid const& identifier) = 0;
    // Removes all that the store of that identifier has on disk. Fails while the store or a view of it is alive.
    // The completion gets the reason of a failure, or nothing; it is called once, on a later turn of the run loop.
    virtual void removeDataStore(Uuid const& identifier, std::function<void(std::optional<std::string>)> completion)
        = 0;

    virtual std::unique_ptr<WebView> makeWebView(WebViewConfiguration const&) = 0;
};

}
