#include "Platform/Gtk/WebView.h"

#include "Platform/Gtk/Download.h"
#include "Platform/Gtk/EngineView.h"
#include "Platform/Gtk/NavigationTranslation.h"
#include "Platform/Gtk/NoticeView.h"
#include "Platform/Gtk/Sandbox.h"
#include "Platform/Gtk/WebsiteDataStore.h"

#include <gtkmm/window.h>

namespace tarn::gtk {

namespace {

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
    , m_view(makeEngineView(configuration, context, channel))
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
    carryOut(m_navigationDelegate->decidePolicy(*this, translate(decision)), WEBKIT_POLICY_DECISION(decision));
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
