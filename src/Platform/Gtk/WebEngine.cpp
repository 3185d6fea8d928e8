#include "Platform/Gtk/WebEngine.h"

#include "Platform/Gtk/BackgroundTask.h"
#include "Platform/Gtk/FolderAliases.h"
#include "Platform/Gtk/WebView.h"

#include <algorithm>
#include <vector>

namespace tarn::gtk {

namespace {

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

WebEngine::WebEngine(Folders const& folders, Sandbox& sandbox, Log log, SessionSetUp setUp)
    : m_folders { .data = FolderAliases::of(folders.data), .cache = FolderAliases::of(folders.cache) }
    , m_sandbox(sandbox)
    , m_log(std::move(log))
    , m_setUp(std::move(setUp))
    , m_context(adopt(webkit_web_context_new()))
    , m_spelling(m_context.get())
    , m_channel(m_context.get(), m_log)
{
    preferUserLanguages(m_context.get());
}

WebEngine::~WebEngine() = default;

WebsiteFolders WebEngine::foldersOf(Uuid const& id) const
{
    return { .data = m_folders.data / id.string(), .cache = m_folders.cache / id.string() };
}

std::shared_ptr<platform::WebsiteDataStore> WebEngine::dataStore(Uuid const& id)
{
    auto& entry = m_stores[id];
    auto store = entry.lock();
    if (!store) {
        store = std::make_shared<WebsiteDataStore>(id, foldersOf(id), m_log);
        entry = store;
        if (m_setUp)
            m_setUp(store->session());
    }
    return store;
}

void WebEngine::removeDataStore(Uuid const& id, std::function<void(std::optional<std::string>)> completion)
{
    if (auto const store = m_stores.find(id); store != m_stores.end() && !store->second.expired()) {
        m_runLoop.post(
            m_lifetime.guard([completion = std::move(completion)] { completion("the website data is still in use"); }));
        return;
    }
    m_stores.erase(id);
    runInBackground<std::optional<std::string>>([folders = foldersOf(id)] { return RemovedFolders::remove(folders); },
        m_lifetime.guard(
            [this, folders = foldersOf(id), completion = std::move(completion)](std::optional<std::string> error) {
                auto const removed = m_removed.emplace(m_removed.end(), folders);
                removed->setTimer(
                    m_runLoop.after(RemovedFolders::guardTime, [this, removed] { m_removed.erase(removed); }));
                completion(std::move(error));
            }));
}

std::unique_ptr<platform::WebView> WebEngine::makeWebView(platform::WebViewConfiguration const& configuration)
{
    return std::make_unique<WebView>(configuration, m_context.get(), m_channel, m_sandbox);
}

}
