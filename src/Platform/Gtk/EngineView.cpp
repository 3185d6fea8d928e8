#include "Platform/Gtk/EngineView.h"

#include "Platform/Gtk/ClickWatch.h"
#include "Platform/Gtk/MessageChannel.h"
#include "Platform/Gtk/ScriptMessages.h"
#include "Platform/Gtk/WebView.h"
#include "Platform/Gtk/WebsiteDataStore.h"

#include <algorithm>

namespace tarn::gtk {

namespace {

Ref<WebKitSettings> makeSettings(platform::WebViewConfiguration const& configuration)
{
    auto settings = adopt(webkit_settings_new());
    webkit_settings_set_javascript_can_open_windows_automatically(
        settings.get(), configuration.javaScriptCanOpenWindowsAutomatically);
    webkit_settings_set_enable_fullscreen(settings.get(), configuration.elementFullscreenEnabled);
    webkit_settings_set_enable_back_forward_navigation_gestures(
        settings.get(), configuration.allowsBackForwardNavigationGestures);
    return settings;
}

WebKitUserScript* makeUserScript(platform::UserScript const& script)
{
    return webkit_user_script_new(script.source.c_str(),
        script.frames == platform::InjectedFrames::allFrames ? WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES
                                                             : WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
        script.injectionTime == platform::InjectionTime::documentStart ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                                                                       : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END,
        nullptr, nullptr);
}

// Everything of the opener's goes over to the new view but the settings.
Ref<WebKitWebView> makeRelatedView(WebKitWebView* opener)
{
    return sink(WEBKIT_WEB_VIEW(g_object_new(
        WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings", webkit_web_view_get_settings(opener), nullptr)));
}

}

Ref<WebKitWebView> makeEngineView(
    platform::WebViewConfiguration const& configuration, WebKitWebContext* context, MessageChannel const& channel)
{
    if (configuration.opener)
        return makeRelatedView(static_cast<WebView*>(configuration.opener)->engineView());
    auto const contentManager
        = channel.contentManagerWithScripts({ ClickWatch::script(), ScriptMessages::relayScript() });
    auto const add = [&](platform::UserScript const& script) {
        auto* const userScript = makeUserScript(script);
        webkit_user_content_manager_add_script(contentManager.get(), userScript);
        webkit_user_script_unref(userScript);
    };
    auto const& content = configuration.userContentController;
    if (auto handlers = ScriptMessages::handlersScript(content.messageHandlers); !handlers.empty())
        add({ .source = std::move(handlers) });
    std::ranges::for_each(content.userScripts, add);
    auto const settings = makeSettings(configuration);
    auto const& store = static_cast<WebsiteDataStore const&>(*configuration.dataStore);
    return sink(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context, "network-session",
        store.session(), "user-content-manager", contentManager.get(), "settings", settings.get(), nullptr)));
}

}
