#pragma once

#include "Platform/UserContentController.h"
#include "Platform/WebsiteDataStore.h"

#include <memory>

namespace tarn::platform {

struct WebViewConfiguration {
    std::shared_ptr<WebsiteDataStore> dataStore;
    UserContentController userContentController;
    bool javaScriptCanOpenWindowsAutomatically { false };
    bool elementFullscreenEnabled { false };
    bool allowsBackForwardNavigationGestures { false };
};

}
