#include "Contract/WebViewContract.h"
#include "Web/WebTest.h"

#include <gtkmm/window.h>

namespace tarn::test {

// The real view, alone in a window.
class EngineHarness : public WebTest {
public:
    EngineHarness()
    {
        startEngine(sandbox);
        platform::WebViewConfiguration configuration;
        configuration.dataStore = engine->dataStore(Uuid::random());
        m_view = engine->makeWebView(configuration);
        m_window.set_child(gtk::widgetOf(*m_view));
        m_window.present();
    }
    ~EngineHarness() override { m_window.unset_child(); }
    void TestBody() override { }

    platform::WebView& view() { return *m_view; }
    void settle(std::function<bool()> const& settled) { waitUntil(settled, "the load"); }
    void crash()
    {
        bool ended = false;
        gtk::Signal<void(WebKitWebProcessTerminationReason)> const watch(
            engineView(), "web-process-terminated", [&](auto) { ended = true; });
        killWebProcesses();
        waitUntil([&] { return ended; }, "the crash");
    }
    static Url page(int number) { return *Url::parse("https://news.example/story?" + std::to_string(number)); }

private:
    WebKitWebView* engineView() { return static_cast<gtk::WebView&>(*m_view).engineView(); }

    std::unique_ptr<platform::WebView> m_view;
    Gtk::Window m_window;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Engine, WebViewContract, EngineHarness);

}
