#pragma once

#include "Platform/Gtk/MessageChannel.h"
#include "Platform/Gtk/RemovedFolders.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/Gtk/Sandbox.h"
#include "Platform/Gtk/Spelling.h"
#include "Platform/Gtk/WebsiteDataStore.h"
#include "Platform/WebEngine.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

#include <filesystem>
#include <functional>
#include <list>
#include <map>

namespace tarn::gtk {

class WebEngine final : public platform::WebEngine {
public:
    struct Folders {
        // One folder per profile in each, named by the profile's identifier.
        std::filesystem::path data;
        std::filesystem::path cache;
    };
    // Sees each new session before it is used. This is how another set of services is put in place of the real ones;
    // the application itself passes nothing.
    using SessionSetUp = std::function<void(WebKitNetworkSession*)>;

    // The sandbox outlives the engine.
    WebEngine(Folders const&, Sandbox&, Log, SessionSetUp = {});
    ~WebEngine() override;

    std::shared_ptr<platform::WebsiteDataStore> dataStore(Uuid const&) override;
    void removeDataStore(Uuid const&, std::function<void(std::optional<std::string>)> completion) override;
    std::unique_ptr<platform::WebView> makeWebView(platform::WebViewConfiguration const&) override;

    Spelling& spelling() { return m_spelling; }

private:
    WebsiteFolders foldersOf(Uuid const&) const;

    Folders m_folders;
    Sandbox& m_sandbox;
    Log m_log;
    SessionSetUp m_setUp;
    Ref<WebKitWebContext> m_context;
    Spelling m_spelling;
    MessageChannel m_channel;
    std::map<Uuid, std::weak_ptr<WebsiteDataStore>> m_stores;
    std::list<RemovedFolders> m_removed;
    RunLoop m_runLoop;
    Lifetime m_lifetime;
};

}
