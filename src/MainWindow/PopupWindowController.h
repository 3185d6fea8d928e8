#pragma once

#include "MainWindow/PageDelegate.h"
#include "MainWindow/WindowFactory.h"
#include "Platform/WebEngine.h"

#include <functional>
#include <memory>

namespace tarn {

// One window that a page opened, or that was opened for a link, and its web view.
class PopupWindowController final : public PageDelegate, private platform::CommandReceiver {
public:
    // For what the page does not say of its size; in points.
    static constexpr int defaultWidth = 900;
    static constexpr int defaultHeight = 700;

    // The window is hidden until the engine says that it is ready, or until present().
    PopupWindowController(platform::WebEngine&, WindowFactory&, platform::WebViewConfiguration const&, PageServices);
    ~PopupWindowController();

    platform::WebView& webView() { return *m_webView; }
    platform::PopupWindow& window() { return *m_window; }
    // Whether any page has come: a window that was only opened for a download has none.
    bool hasShownPage() const { return m_hasShownPage; }

    // The window is about to close. The controller must not end in the call.
    std::function<void()> onClose;
    // The page asks for a window of its own: makes it and returns its view.
    std::function<platform::WebView*(platform::WebViewConfiguration const&)> onPopup;
    std::function<void(Url const&)> onAsk;

    void present();
    void close() { m_window->close(); }

    void didBecomeDownload(platform::WebView&, std::shared_ptr<platform::Download>) override;
    void didCommit(platform::WebView&) override;
    void historyDidChange(platform::WebView&) override;

    platform::WebView* createWebView(
        platform::WebView&, platform::WebViewConfiguration const&, platform::NavigationAction const&) override;
    void readyToShow(platform::WebView&, platform::WindowFeatures const&) override;
    void didClose(platform::WebView&) override;

private:
    platform::NavigationPolicy decideForPage(
        platform::WebView&, Url const&, platform::NavigationAction const&) override;
    bool perform(platform::Command, int tag) override;
    std::optional<platform::CommandState> validate(platform::Command, int tag) const override;
    void titleChanged();
    void showOrigin();

    platform::MenuBar m_menuBar;
    std::unique_ptr<platform::WebView> m_webView;
    std::unique_ptr<platform::PopupWindow> m_window;
    bool m_hasShownPage { false };
};

}
