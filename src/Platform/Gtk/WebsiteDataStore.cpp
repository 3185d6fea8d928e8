#include "Platform/Gtk/WebsiteDataStore.h"

#include "Support/Unicode.h"

#include <glib.h>

namespace tarn::gtk {

namespace {

Ref<WebKitNetworkSession> makeSession(WebsiteFolders const& folders, Log const& log)
{
    for (auto const& folder : { folders.data, folders.cache }) {
        if (g_mkdir_with_parents(folder.c_str(), 0700) != 0)
            log("[Profiles] could not create the folder of a profile's website data");
    }
    bool const readable = isUtf8(folders.data.string()) && isUtf8(folders.cache.string());
    auto session = adopt(readable ? webkit_network_session_new(folders.data.c_str(), folders.cache.c_str())
                                  : webkit_network_session_new_ephemeral());
    auto* const cookies = webkit_network_session_get_cookie_manager(session.get());
    if (readable)
        webkit_cookie_manager_set_persistent_storage(
            cookies, (folders.data / "cookies.sqlite").c_str(), WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
    else
        log("[Profiles] the engine cannot read the name of the folder: nothing of the pages is kept");
    // A profile is one sign-in for a few services that embed each other across domains (files, sign-in providers).
    // What keeps tracking apart is that profiles share nothing.
    webkit_cookie_manager_set_accept_policy(cookies, WEBKIT_COOKIE_POLICY_ACCEPT_ALWAYS);
    // Saved HTTP passwords would go to the desktop's keyring, which all profiles share.
    webkit_network_session_set_persistent_credential_storage_enabled(session.get(), FALSE);
    webkit_website_data_manager_set_favicons_enabled(
        webkit_network_session_get_website_data_manager(session.get()), FALSE);
    return session;
}

}

WebsiteDataStore::WebsiteDataStore(Uuid const& identifier, WebsiteFolders const& folders, Log log)
    : m_identifier(identifier)
    , m_session(makeSession(folders, log))
    , m_downloadStarted(m_session.get(), "download-started", [log](WebKitDownload* download) {
        if (webkit_download_get_web_view(download))
            return; // The view's own business.
        // Left alone, the engine would save without asking, and delete a file of the same name when it fails.
        webkit_download_cancel(download);
        log("[Downloads] refused one that comes from no page");
    })
{
}

}
