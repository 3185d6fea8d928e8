#pragma once

#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/Signal.h"
#include "Platform/WebsiteDataStore.h"
#include "Support/Log.h"

#include <webkit/webkit.h>

#include <filesystem>
#include <functional>

namespace tarn::gtk {

// The two folders that hold everything of one profile's pages.
struct WebsiteFolders {
    std::filesystem::path data;
    std::filesystem::path cache;
};

// One network session of the engine, with persistent cookies.
class WebsiteDataStore final : public platform::WebsiteDataStore {
public:
    WebsiteDataStore(Uuid const&, WebsiteFolders const&, Log);

    Uuid identifier() const override { return m_identifier; }
    WebKitNetworkSession* session() const { return m_session.get(); }

private:
    Uuid m_identifier;
    Ref<WebKitNetworkSession> m_session;
    Signal<void(WebKitDownload*)> m_downloadStarted;
};

}
