#include "Platform/Gtk/WebEngine.h"

#include "Platform/Gtk/BackgroundTask.h"
#include "Platform/Gtk/WebView.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

namespace tarn::gtk {

namespace {

// The engine's network process closes a session some time after its last view has gone, and puts folders back while it
// does. It has no word for when it is done: what counts is that nothing comes back. Blocks; not for the main thread.
std::optional<std::string> removeFolders(WebsiteFolders const& folders)
{
    constexpr int attempts = 10;
    constexpr std::chrono::milliseconds pause { 300 };
    for (int attempt = 0; attempt < attempts; ++attempt) {
        for (auto const& folder : { folders.data, folders.cache }) {
            std::error_code error;
            std::filesystem::remove_all(folder, error);
            if (error)
                return error.message();
        }
        std::this_thread::sleep_for(pause);
        if (!std::filesystem::exists(folders.data) && !std::filesystem::exists(folders.cache))
            return std::nullopt;
    }
    return "the web engine keeps writing website data";
}

// The languages of the user's locale, most wanted first, as web pages name them.
void preferUserLanguages(WebKitWebContext* context)
{
    std::vector<std::string> tags;
    for (auto const* const* name = g_get_language_names(); *name; ++name) {
        std::string tag = *name;
        if (tag == "C" || tag == "POSIX" || tag.find_first_of(".@") != std::string::npos)
            continue;
        std::replace(tag.begin(), tag.end(), '_', '-');
        tags.push_back(std::move(tag));
    }
    if (tags.empty())
        tags.emplace_back("en-US");
    std::vector<char const*> pointers(tags.size() + 1);
    std::ranges::transform(tags, pointers.begin(), &std::string::c_str);
    webkit_web_context_set_preferred_languages(context, pointers.data());
}

}

WebEngine::WebEngine(Folders folders, Sandbox& sandbox, Log log, SessionSetUp setUp)
    : m_folders(std::move(folders))
    , m_sandbox(sandbox)
    , m_log(std::move(log))
    , m_setUp(std::move(setUp))
    , m_context(adopt(webkit_web_context_new()))
    , m_channel(m_context.get())
{
    preferUserLanguages(m_context.get());
}

WebEngine::~WebEngine()
{
    for (auto const& [id, store] : m_stores)
        g_weak_ref_clear(&store->session);
}

WebsiteFolders WebEngine::foldersOf(Uuid const& id) const
{
    return { .data = m_folders.data / id.string(), .cache = m_folders.cache / id.string() };
}

std::shared_ptr<platform::WebsiteDataStore> WebEngine::dataStore(Uuid const& id)
{
    auto& entry = m_stores[id];
    if (entry) {
        if (auto existing = entry->store.lock())
            return existing;
        g_weak_ref_clear(&entry->session);
    }
    auto store = std::make_shared<WebsiteDataStore>(id, foldersOf(id), m_log);
    if (m_setUp)
        m_setUp(store->session());
    entry = std::make_unique<Store>();
    entry->store = store;
    g_weak_ref_init(&entry->session, store->session());
    return store;
}

void WebEngine::removeDataStore(Uuid const& id, std::function<void(std::optional<std::string>)> completion)
{
    bool inUse = false;
    if (auto const entry = m_stores.find(id); entry != m_stores.end()) {
        auto const session = Ref<GObject>::adopt(static_cast<GObject*>(g_weak_ref_get(&entry->second->session)));
        inUse = static_cast<bool>(session);
        if (!inUse) {
            g_weak_ref_clear(&entry->second->session);
            m_stores.erase(entry);
        }
    }
    runInBackground<std::optional<std::string>>(
        [inUse, folders = foldersOf(id)]() -> std::optional<std::string> {
            if (inUse)
                return "the website data is still in use";
            return removeFolders(folders);
        },
        std::move(completion));
}

std::unique_ptr<platform::WebView> WebEngine::makeWebView(platform::WebViewConfiguration const& configuration)
{
    return std::make_unique<WebView>(configuration, m_context.get(), m_channel, m_sandbox);
}

}
