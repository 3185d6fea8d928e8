#include "Platform/Gtk/WebView.h"

#include "Platform/Gtk/Download.h"
#include "Platform/Gtk/NoticeView.h"
#include "Platform/Gtk/Sandbox.h"
#include "Platform/Gtk/WebsiteDataStore.h"

#include <gdk/gdk.h>
#include <gtkmm/window.h>

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

void carryOut(platform::NavigationPolicy policy, WebKitPolicyDecision* decision)
{
    switch (policy) {
    case platform::NavigationPolicy::cancel:
        webkit_policy_decision_ignore(decision);
        break;
    case platform::NavigationPolicy::allow:
        webkit_policy_decision_use(decision);
        break;
    case platform::NavigationPolicy::download:
        webkit_policy_decision_download(decision);
        break;
    }
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

Ref<WebKitWebView> makeView(
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

platform::NavigationAction translate(WebKitNavigationAction* action)
{
    platform::NavigationAction result;
    if (auto const* const uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)))
        result.url = uri;
    if (webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED)
        result.type = platform::NavigationType::linkActivated;
    result.commandKey = (webkit_navigation_action_get_modifiers(action) & GDK_CONTROL_MASK) != 0;
    result.userGesture = webkit_navigation_action_is_user_gesture(action);
    switch (webkit_navigation_action_get_mouse_button(action)) {
    case GDK_BUTTON_PRIMARY:
        result.button = platform::MouseButton::primary;
        break;
    case GDK_BUTTON_MIDDLE:
        result.button = platform::MouseButton::middle;
        break;
    case GDK_BUTTON_SECONDARY:
        result.button = platform::MouseButton::secondary;
        break;
    default:
        break;
    }
    return result;
}

platform::LoadFailure::Kind kindOf(GError const* error)
{
    using Kind = platform::LoadFailure::Kind;
    if (error->domain == G_RESOLVER_ERROR)
        return Kind::nameNotFound;
    // A connection that breaks while it is made says nothing of the server.
    if (g_error_matches(error, G_TLS_ERROR, G_TLS_ERROR_EOF) || g_error_matches(error, G_TLS_ERROR, G_TLS_ERROR_MISC))
        return Kind::cannotConnect;
    if (error->domain == G_TLS_ERROR)
        return Kind::notSecure;
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
        return Kind::timedOut;
    for (int const code : { G_IO_ERROR_CONNECTION_REFUSED, G_IO_ERROR_HOST_UNREACHABLE, G_IO_ERROR_NETWORK_UNREACHABLE,
             G_IO_ERROR_HOST_NOT_FOUND, G_IO_ERROR_CONNECTION_CLOSED, G_IO_ERROR_PROXY_FAILED }) {
        if (g_error_matches(error, G_IO_ERROR, code))
            return Kind::cannotConnect;
    }
    return Kind::other;
}

bool isChannelAddress(std::string const& url)
{
    return url.starts_with(std::string(MessageChannel::scheme) + ":");
}

}

WebView::WebView(platform::WebViewConfiguration const& configuration, WebKitWebContext* context,
    MessageChannel& channel, Sandbox& sandbox)
    : m_configuration(configuration)
    , m_channel(channel)
    , m_sandbox(sandbox)
    , m_view(makeView(configuration, context, channel))
    , m_messages(*this, m_view.get(), configuration.userContentController.messageHandlers)
    , m_dialogs(*this, m_view.get())
    , m_find(m_view.get())
    , m_printer(m_view.get())
    , m_onDecidePolicy(
          m_view.get(), "decide-policy", [this](auto* decision, auto type) { return decidePolicy(decision, type); })
    , m_onCreate(m_view.get(), "create", [this](WebKitNavigationAction* action) { return createWindow(action); })
    , m_onReadyToShow(m_view.get(), "ready-to-show", [this] { readyToShow(); })
    , m_onClose(m_view.get(), "close",
          [this] {
              if (m_uiDelegate)
                  m_uiDelegate->didClose(*this);
          })
    , m_onLoadChanged(m_view.get(), "load-changed", [this](auto event) { loadChanged(event); })
    , m_onLoadFailed(m_view.get(), "load-failed",
          [this](WebKitLoadEvent, char const* url, GError* error) -> gboolean {
              m_loadFailed = true;
              if (m_requested && m_requested->url.string() == url) {
                  m_timeout.reset();
                  m_requested.reset();
              }
              bool const intended = g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED)
                  || error->domain == WEBKIT_POLICY_ERROR;
              if (!intended)
                  fail({ .url = url, .kind = kindOf(error), .reason = error->message });
              return TRUE;
          })
    , m_onTlsFailed(m_view.get(), "load-failed-with-tls-errors",
          [this](char const* url, GTlsCertificate*, GTlsCertificateFlags) -> gboolean {
              m_loadFailed = true;
              fail({ .url = url, .kind = platform::LoadFailure::Kind::notSecure });
              return TRUE;
          })
    , m_onTerminated(m_view.get(), "web-process-terminated", [this](auto reason) { processTerminated(reason); })
    , m_onTitle(m_view.get(), "notify::title",
          [this](GParamSpec*) {
              if (m_onTitleChange)
                  m_onTitleChange();
          })
    , m_onUrl(m_view.get(), "notify::uri", [this](GParamSpec*) { urlChanged(); })
    , m_onHistory(webkit_web_view_get_back_forward_list(m_view.get()), "changed",
          [this](WebKitBackForwardListItem*, gpointer) {
              if (m_navigationDelegate)
                  m_navigationDelegate->historyDidChange(*this);
          })
    , m_onDownloadStarted(static_cast<WebsiteDataStore const&>(*m_configuration.dataStore).session(),
          "download-started", [this](WebKitDownload* download) { downloadStarted(download); })
    , m_permissions(*this, m_view.get(), [this] { return m_uiDelegate; })
{
    if (configuration.opener) {
        if (auto const* const window = dynamic_cast<Gtk::Window*>(widgetOf(*configuration.opener).get_root()))
            window->get_default_size(m_openerSize.first, m_openerSize.second);
    }
    m_configuration.opener = nullptr;
    // The user may take any time over it.
    m_dialogs.onAskToLeave = [this] { m_timeout.reset(); };
    m_dialogs.onLeaveDecided = [this](bool leaves) { decideLeaving(leaves); };
    m_printer.onFailure = [this](std::string const& reason) {
        if (m_uiDelegate)
            m_uiDelegate->didFailToPrint(*this, reason);
    };
    m_stack.add(*Glib::wrap(GTK_WIDGET(m_view.get())), "page");
    m_channel.setReceiver(m_view.get(), [this](auto const& message, MessageChannel::Answer answer) {
        if (message.name.starts_with("click"))
            m_clicks.receive(message);
        else
            m_messages.receive(message, std::move(answer));
    });
}

WebView::~WebView()
{
    m_channel.removeReceiver(m_view.get());
}

void WebView::setUIDelegate(platform::UIDelegate* delegate)
{
    m_uiDelegate = delegate;
    m_dialogs.setDelegate(delegate);
}

void WebView::grabFocus()
{
    if (m_notice)
        m_notice->focusButton();
    else
        gtk_widget_grab_focus(GTK_WIDGET(m_view.get()));
}

void WebView::load(platform::UrlRequest const& request)
{
    showNotice(std::nullopt);
    if (!m_url)
        m_url = request.url;
    whenPagesCanRun([this, request] {
        if (!m_requested)
            m_urlBefore = m_url;
        m_requested = request;
        startTimeout();
        webkit_web_view_load_uri(m_view.get(), request.url.string().c_str());
    });
}

void WebView::startTimeout()
{
    m_timeout = m_runLoop.after(m_requested->timeout, [this, url = m_requested->url.string()] {
        if (!webkit_web_view_is_loading(m_view.get()))
            return;
        webkit_web_view_stop_loading(m_view.get());
        fail({ .url = url, .kind = platform::LoadFailure::Kind::timedOut });
    });
}

void WebView::decideLeaving(bool leaves)
{
    if (!m_requested)
        return;
    if (leaves) {
        startTimeout();
    } else {
        // The engine goes on naming the page that was refused.
        m_url = m_urlBefore;
        m_requested.reset();
    }
}

void WebView::reload()
{
    showNotice(std::nullopt);
    // A view whose process ended before its first page came has nothing to reload.
    auto* const history = webkit_web_view_get_back_forward_list(m_view.get());
    if (!webkit_back_forward_list_get_current_item(history) && m_url)
        load({ .url = *m_url });
    else
        webkit_web_view_reload(m_view.get());
}

void WebView::whenPagesCanRun(std::function<void()> function)
{
    m_sandbox.whenKnown(m_lifetime.guard([this, function = std::move(function)](Sandbox::Problem const& problem) {
        if (!problem)
            function();
        else if (m_navigationDelegate)
            m_navigationDelegate->webContentProcessDidTerminate(
                *this, { .reason = platform::ProcessTermination::Reason::cannotStart, .explanation = *problem });
    }));
}

std::optional<std::string> WebView::title() const
{
    auto const* const title = webkit_web_view_get_title(m_view.get());
    return title ? std::optional<std::string>(title) : std::nullopt;
}

void WebView::evaluateJavaScript(std::string const& source, std::function<void(std::optional<std::string>)> completion)
{
    using Completion = std::function<void(std::optional<std::string>)>;
    auto* const finish = +[](GObject* view, GAsyncResult* result, gpointer data) {
        std::unique_ptr<Completion> const asked(static_cast<Completion*>(data));
        auto const value = adopt(webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr));
        g_autofree char* json = value ? jsc_value_to_json(value.get(), 0) : nullptr;
        if (asked)
            (*asked)(json ? std::optional<std::string>(json) : std::nullopt);
    };
    auto* const asked = completion ? new Completion(m_lifetime.guard(std::move(completion))) : nullptr;
    webkit_web_view_evaluate_javascript(
        m_view.get(), source.data(), static_cast<gssize>(source.size()), nullptr, nullptr, nullptr, finish, asked);
}

void WebView::showNotice(std::optional<platform::PageNotice> notice)
{
    bool const hadFocus = gtk_widget_get_focus_child(GTK_WIDGET(m_stack.gobj())) != nullptr;
    if (m_notice) {
        m_stack.set_visible_child("page");
        // The notice may be what asks, from its own button: it ends when that is done.
        std::shared_ptr<NoticeView> const old = std::move(m_notice);
        m_stack.remove(*old);
        m_runLoop.post([old] {});
    }
    if (notice) {
        m_notice = std::make_unique<NoticeView>(*notice);
        m_stack.add(*m_notice, "notice");
        m_stack.set_visible_child("notice");
    }
    if (hadFocus)
        grabFocus();
}

GtkWidget* WebView::createWindow(WebKitNavigationAction* action)
{
    if (!m_uiDelegate)
        return nullptr;
    auto configuration = m_configuration;
    configuration.opener = this;
    auto* const view = m_uiDelegate->createWebView(*this, configuration, translate(action));
    return view ? GTK_WIDGET(static_cast<WebView*>(view)->engineView()) : nullptr;
}

void WebView::readyToShow()
{
    if (!m_uiDelegate)
        return;
    // Where the page says nothing, the engine names the size of the opener's window, or 100 for links.
    constexpr int nothing = 100;
    GdkRectangle size {};
    webkit_window_properties_get_geometry(webkit_web_view_get_window_properties(m_view.get()), &size);
    platform::WindowFeatures features;
    if (size.width > nothing && size.width != m_openerSize.first)
        features.width = size.width;
    if (size.height > nothing && size.height != m_openerSize.second)
        features.height = size.height;
    m_uiDelegate->readyToShow(*this, features);
}

gboolean WebView::decidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type)
{
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE)
        return decideResponse(WEBKIT_RESPONSE_POLICY_DECISION(decision));
    // Windows are decided on when they are made.
    if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION)
        return FALSE;

    auto* const engineAction
        = webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    auto action = translate(engineAction);
    auto policy = platform::NavigationPolicy::allow;
    if (isChannelAddress(action.url)) {
        policy = platform::NavigationPolicy::cancel;
    } else {
        if (action.type == platform::NavigationType::linkActivated)
            m_clicks.complete(action);
        if (m_navigationDelegate)
            policy = m_navigationDelegate->decidePolicy(*this, action);
    }
    carryOut(policy, decision);
    return TRUE;
}

gboolean WebView::decideResponse(WebKitResponsePolicyDecision* decision)
{
    if (!m_navigationDelegate)
        return FALSE;
    auto* const response = webkit_response_policy_decision_get_response(decision);
    platform::NavigationResponse translated {
        .url = webkit_uri_response_get_uri(response),
        .canShowMimeType = static_cast<bool>(webkit_response_policy_decision_is_mime_type_supported(decision)),
    };
    auto* const headers = webkit_uri_response_get_http_headers(response);
    if (auto const* const disposition
        = headers ? soup_message_headers_get_one(headers, "Content-Disposition") : nullptr)
        translated.contentDisposition = disposition;
    carryOut(m_navigationDelegate->decidePolicy(*this, translated), WEBKIT_POLICY_DECISION(decision));
    return TRUE;
}

void WebView::downloadStarted(WebKitDownload* download)
{
    if (webkit_download_get_web_view(download) != m_view.get())
        return;
    auto started = std::make_shared<Download>(download);
    if (m_navigationDelegate)
        m_navigationDelegate->didBecomeDownload(*this, std::move(started));
}

void WebView::loadChanged(WebKitLoadEvent event)
{
    switch (event) {
    case WEBKIT_LOAD_STARTED:
        m_loadFailed = false;
        break;
    case WEBKIT_LOAD_REDIRECTED:
        break;
    case WEBKIT_LOAD_COMMITTED:
        m_timeout.reset();
        m_requested.reset();
        m_find.pageEnded();
        urlChanged();
        showNotice(std::nullopt);
        if (m_navigationDelegate)
            m_navigationDelegate->didCommit(*this);
        break;
    case WEBKIT_LOAD_FINISHED:
        if (m_navigationDelegate && !m_loadFailed)
            m_navigationDelegate->didFinish(*this);
        break;
    }
}

void WebView::fail(platform::LoadFailure const& failure)
{
    m_timeout.reset();
    m_requested.reset();
    if (m_navigationDelegate)
        m_navigationDelegate->didFail(*this, failure);
}

void WebView::processTerminated(WebKitWebProcessTerminationReason reason)
{
    using Reason = platform::ProcessTermination::Reason;
    m_timeout.reset();
    m_find.pageEnded();
    if (m_navigationDelegate)
        m_navigationDelegate->webContentProcessDidTerminate(*this,
            { .reason
                = reason == WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT ? Reason::exceededMemoryLimit : Reason::crashed });
}

void WebView::urlChanged()
{
    auto const* const uri = webkit_web_view_get_uri(m_view.get());
    if (uri && *uri)
        m_url = Url::parse(uri);
}

Gtk::Widget& widgetOf(platform::WebView& view)
{
    return static_cast<WebView&>(view).widget();
}

}
