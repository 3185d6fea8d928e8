#pragma once

#include "Platform/Gtk/ClickWatch.h"
#include "Platform/Gtk/MessageChannel.h"
#include "Platform/Gtk/PageDialogs.h"
#include "Platform/Gtk/PageFind.h"
#include "Platform/Gtk/PagePermissions.h"
#include "Platform/Gtk/PagePrinter.h"
#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/Gtk/ScriptMessages.h"
#include "Platform/Gtk/Signal.h"
#include "Platform/WebView.h"
#include "Platform/WebViewConfiguration.h"
#include "Support/Lifetime.h"

#include <gtkmm/stack.h>
#include <webkit/webkit.h>

#include <utility>

namespace tarn::gtk {

class NoticeView;
class Sandbox;

class WebView final : public platform::WebView {
public:
    // The channel and the sandbox outlive the view.
    WebView(platform::WebViewConfiguration const&, WebKitWebContext*, MessageChannel&, Sandbox&);
    ~WebView() override;

    Gtk::Widget& widget() { return m_stack; }
    WebKitWebView* engineView() const { return m_view.get(); }
    // Typing goes to the page, or to the notice that covers it.
    void grabFocus();

    void setNavigationDelegate(platform::NavigationDelegate* delegate) override { m_navigationDelegate = delegate; }
    void setUIDelegate(platform::UIDelegate*) override;
    void setOnTitleChange(std::function<void()> onTitleChange) override { m_onTitleChange = std::move(onTitleChange); }

    void load(platform::UrlRequest const&) override;
    void reload() override;
    void goBack() override { webkit_web_view_go_back(m_view.get()); }
    void goForward() override { webkit_web_view_go_forward(m_view.get()); }
    bool canGoBack() const override { return webkit_web_view_can_go_back(m_view.get()); }
    bool canGoForward() const override { return webkit_web_view_can_go_forward(m_view.get()); }
    std::optional<Url> url() const override { return m_url; }
    std::optional<std::string> title() const override;
    double pageZoom() const override { return webkit_web_view_get_zoom_level(m_view.get()); }
    void setPageZoom(double factor) override { webkit_web_view_set_zoom_level(m_view.get(), factor); }
    using platform::WebView::evaluateJavaScript;
    void evaluateJavaScript(
        std::string const& source, std::function<void(std::optional<std::string>)> completion) override;
    void find(std::string const& text, platform::FindOptions const& options,
        std::function<void(bool found)> completion) override
    {
        m_find.find(text, options, std::move(completion));
    }
    void endFind() override { m_find.end(); }
    void print() override { m_printer.print(); }
    void showNotice(std::optional<platform::PageNotice>) override;

private:
    GtkWidget* createWindow(WebKitNavigationAction*);
    void readyToShow();
    gboolean decidePolicy(WebKitPolicyDecision*, WebKitPolicyDecisionType);
    gboolean decideResponse(WebKitResponsePolicyDecision*);
    void downloadStarted(WebKitDownload*);
    void loadChanged(WebKitLoadEvent);
    void fail(platform::LoadFailure const&);
    void processTerminated(WebKitWebProcessTerminationReason);
    void urlChanged();
    void whenPagesCanRun(std::function<void()>);
    void startTimeout();
    void decideLeaving(bool leaves);

    // What windows of its pages are made with too. Its store is in use as long as a view of it is there.
    platform::WebViewConfiguration m_configuration;
    // In points, of the opener's window when it opened this; what the page wants of its own size differs from it.
    std::pair<int, int> m_openerSize { 0, 0 };
    MessageChannel& m_channel;
    Sandbox& m_sandbox;
    RunLoop m_runLoop;
    platform::NavigationDelegate* m_navigationDelegate { nullptr };
    platform::UIDelegate* m_uiDelegate { nullptr };
    std::function<void()> m_onTitleChange;
    ClickWatch m_clicks;
    // Kept here: after the end of its process the engine's view has forgotten it.
    std::optional<Url> m_url;
    bool m_loadFailed { false };
    // The last load() that has neither come nor failed yet, and what was shown before it.
    std::optional<platform::UrlRequest> m_requested;
    std::optional<Url> m_urlBefore;
    std::unique_ptr<platform::Timer> m_timeout;

    Ref<WebKitWebView> m_view;
    ScriptMessages m_messages;
    PageDialogs m_dialogs;
    PageFind m_find;
    PagePrinter m_printer;
    Gtk::Stack m_stack;
    std::unique_ptr<NoticeView> m_notice;
    Signal<gboolean(WebKitPolicyDecision*, WebKitPolicyDecisionType)> m_onDecidePolicy;
    Signal<GtkWidget*(WebKitNavigationAction*)> m_onCreate;
    Signal<void()> m_onReadyToShow;
    Signal<void()> m_onClose;
    Signal<void(WebKitLoadEvent)> m_onLoadChanged;
    Signal<gboolean(WebKitLoadEvent, char const*, GError*)> m_onLoadFailed;
    Signal<gboolean(char const*, GTlsCertificate*, GTlsCertificateFlags)> m_onTlsFailed;
    Signal<void(WebKitWebProcessTerminationReason)> m_onTerminated;
    Signal<void(GParamSpec*)> m_onTitle;
    Signal<void(GParamSpec*)> m_onUrl;
    Signal<void(WebKitBackForwardListItem*, gpointer)> m_onHistory;
    Signal<void(WebKitDownload*)> m_onDownloadStarted;
    PagePermissions m_permissions;
    Lifetime m_lifetime;
};

// The native face of a view that this adapter made, which is all views there are.
Gtk::Widget& widgetOf(platform::WebView&);

}
