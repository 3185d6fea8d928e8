#include "MainWindow/SessionRefresher.h"

#include "Apps/LinkPolicy.h"

namespace tarn {

void SessionRefresher::didCommit(platform::WebView const& view)
{
    auto const url = view.url();
    if (!url || !url->hasHost())
        return;
    if (url->host() == LinkPolicy::accountsHost)
        m_signingIn.insert(&view);
    else if (!LinkPolicy::isInternal(*url))
        m_signingIn.erase(&view);
}

void SessionRefresher::didFinish(platform::WebView const& view)
{
    if (!m_signingIn.contains(&view))
        return;
    auto const url = view.url();
    if (!url || url->host() == LinkPolicy::accountsHost || !LinkPolicy::isGoogleApp(*url))
        return;

    m_signingIn.erase(&view);
    auto const now = m_host.now();
    if (m_lastSync && now - *m_lastSync <= interval)
        return;
    m_lastSync = now;
    m_host.reloadApps([&](platform::WebView const& other) { return &other != &view; });
}

void SessionRefresher::retry(platform::WebView const* onScreen) const
{
    m_host.reloadApps([onScreen](platform::WebView const& view) {
        auto const url = view.url();
        return &view != onScreen && url && url->host() == LinkPolicy::accountsHost;
    });
}

}
