#include "Profiles/WebViewPool.h"

namespace tarn {

WebViewPool::WebViewPool(platform::WebEngine& engine, std::shared_ptr<platform::WebsiteDataStore> dataStore,
    Configure configure, Prepare prepare)
    : m_engine(engine)
    , m_dataStore(std::move(dataStore))
    , m_configure(std::move(configure))
    , m_prepare(std::move(prepare))
{
}

platform::WebView& WebViewPool::view(GoogleApp app)
{
    if (auto const existing = m_views.find(app); existing != m_views.end())
        return *existing->second;

    auto configuration = makeConfiguration();
    configuration.allowsBackForwardNavigationGestures = true;
    auto& view = *m_views.emplace(app, m_engine.makeWebView(configuration)).first->second;
    m_configure(view, app);
    view.load({ .url = app.url() });
    return view;
}

platform::WebViewConfiguration WebViewPool::makeConfiguration() const
{
    platform::WebViewConfiguration configuration;
    configuration.dataStore = m_dataStore;
    configuration.javaScriptCanOpenWindowsAutomatically = true;
    configuration.elementFullscreenEnabled = true;
    m_prepare(configuration.userContentController);
    return configuration;
}

}
