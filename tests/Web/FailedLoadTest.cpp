#include "MainWindow/FailedLoads.h"
#include "Platform/Gtk/WebsiteDataStore.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

class FailedLoadTest : public test::WebTest, protected platform::NavigationDelegate {
protected:
    void didFail(platform::WebView&, platform::LoadFailure const& failure) override { failures.push_back(failure); }

    // The way to all hosts.
    void setReachable(platform::WebsiteDataStore& store, bool reachable)
    {
        auto* const settings
            = webkit_network_proxy_settings_new(reachable ? stage.proxyUri().c_str() : "http://127.0.0.1:1", nullptr);
        webkit_network_session_set_proxy_settings(
            static_cast<gtk::WebsiteDataStore&>(store).session(), WEBKIT_NETWORK_PROXY_MODE_CUSTOM, settings);
        webkit_network_proxy_settings_free(settings);
    }

    std::vector<platform::LoadFailure> failures;
};

TEST_F(FailedLoadTest, TheReasonsAreTold)
{
    using Kind = platform::LoadFailure::Kind;
    startEngine(sandbox);
    platform::WebViewConfiguration configuration;
    configuration.dataStore = engine->dataStore(Uuid::random());
    auto* const session = static_cast<gtk::WebsiteDataStore&>(*configuration.dataStore).session();
    auto const view = engine->makeWebView(configuration);
    view->setNavigationDelegate(this);
    auto const kindOf = [&](char const* url, std::chrono::seconds timeout = std::chrono::seconds(60)) {
        failures.clear();
        view->load({ .url = *Url::parse(url), .timeout = timeout });
        waitUntil([&] { return !failures.empty(); }, std::string("failure of ") + url);
        return failures.empty() ? Kind::other : failures.front().kind;
    };
    EXPECT_EQ(kindOf("https://news.example/_stage/hang", std::chrono::seconds(1)), Kind::timedOut);
    setReachable(*configuration.dataStore, false);
    EXPECT_EQ(kindOf("https://another.example/"), Kind::cannotConnect);
    setReachable(*configuration.dataStore, true);
    webkit_network_session_set_tls_errors_policy(session, WEBKIT_TLS_ERRORS_POLICY_FAIL);
    EXPECT_EQ(kindOf("https://third.example/"), Kind::notSecure);
    webkit_network_session_set_proxy_settings(session, WEBKIT_NETWORK_PROXY_MODE_NO_PROXY, nullptr);
    EXPECT_EQ(kindOf("https://nowhere.invalid/"), Kind::nameNotFound);
}

TEST_F(FailedLoadTest, PagesComeByThemselvesWhenTheNetworkIsBack)
{
    launch();
    open(GoogleApp::mail);
    auto const mailLoads = requestCount("mail.google.com", "/");
    auto const store = engine->dataStore(profiles().activeID());
    setReachable(*store, false);
    controller().openWindow(*Url::parse("https://calendar.google.com/"));
    controller().show(GoogleApp::keep);
    auto const isNotice = [](gtk::WebView& page) {
        return dynamic_cast<Gtk::Stack&>(page.widget()).get_visible_child_name() == "notice";
    };
    auto& keep = view(GoogleApp::keep);
    waitUntil([&] { return isNotice(keep) && isNotice(*popups.at(0)); }, "notices");

    setReachable(*store, true);
    networkMonitor.change(true);
    networkMonitor.change(true);
    waitForPage(GoogleApp::keep);
    waitForPopup(1, "calendar.google.com");
    EXPECT_FALSE(isNotice(keep));
    EXPECT_FALSE(isNotice(*popups.at(0)));
    EXPECT_EQ(requestCount("mail.google.com", "/"), mailLoads) << "only the failed ones";
}

}
}
