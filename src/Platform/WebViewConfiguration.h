#pragma once

#include "Platform/UserContentController.h"
#include "Platform/WebsiteDataStore.h"

#include <memory>

namespace tarn::platform {

class WebView;

struct WebViewConfiguration {
    // The view whose page asked for the new one, which then has its process, its scripts and its window.opener. Alive
    // while the new view is made.
    WebView* opener { nullptr };
    std::shared_ptr<WebsiteDataStore> dataStore;
    UserContentController userContentController;
    bool javaScriptCanOpenWindowsAutomatically { false };
    bool elementFullscreenEnabled { false };
    bool allowsBackForwardNavigationGestures { false };
};

}
