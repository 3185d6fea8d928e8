#include "Web/WebTest.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Real clicks on the links of the mail page.
class NavigationTest : public test::WebTest {
protected:
    NavigationTest()
    {
        launch();
        open(GoogleApp::mail);
        waitUntil([&] { return window().is_active(); }, "active window");
    }

    gtk::WebView& mail() { return view(GoogleApp::mail); }
    bool opened(std::string const& url) { return std::ranges::find(workspace.opened, url) != workspace.opened.end(); }
    // Clicks a link of a frame that stands in the mail page.
    void clickInFrame(std::string const& frame, std::string const& arguments = "click 1")
    {
        auto const place = evaluate(mail(),
            "(async () => { const f = document.querySelector('" + frame
                + "'); f.scrollIntoView({ block: 'center' }); await new Promise(r => requestAnimationFrame(() => "
                  "requestAnimationFrame(r))); const b = f.getBoundingClientRect(); return b.left + ' ' + b.top; })()");
        std::istringstream numbers(place);
        double x = 0;
        double y = 0;
        ASSERT_TRUE(numbers >> x >> y) << frame << ": " << place;
        // Where frame.html has its first link.
        clickAt(*Glib::wrap(GTK_WIDGET(mail().engineView())), x + 26, y + 38, arguments);
    }
};

TEST_F(NavigationTest, LinksGoWhereThePolicySays)
{
    auto const page = mail().url()->string();
    struct Case {
        char const* link;
        char const* arguments;
        char const* opened;
    };
    for (auto const& [link, arguments, target] : {
             Case { "#link-foreign", "click 1", "https://news.example/story" },
             Case { "#link-wrapped", "click 1", "https://news.example/story" },
             Case { "#link-foreign-blank", "click 1", "https://news.example/story" },
             Case { "#link-wrapped-blank", "click 1", "https://news.example/story" },
             Case { "#link-tel", "click 1", "tel:+15550123" },
             Case { "#link-mailto", "click 1", "mailto:mira@example.com" },
             Case { "#link-same", "keydown ctrl click 1 keyup ctrl", "https://mail.google.com/" },
             Case { "#link-calendar", "click 2", "https://calendar.google.com/" },
         }) {
        SCOPED_TRACE(std::string(link) + " " + arguments);
        workspace.opened.clear();
        click(mail(), link, arguments);
        waitUntil([&] { return !workspace.opened.empty(); }, "browser");
        ASSERT_FALSE(workspace.opened.empty());
        EXPECT_TRUE(workspace.opened.front().starts_with(target)) << workspace.opened.front();
        EXPECT_EQ(mail().url()->string(), page) << "the page stays";
    }
    EXPECT_EQ(requestCount("news.example", "/story"), 0);
    EXPECT_EQ(requestCount("calendar.google.com", "/"), 0);
}

TEST_F(NavigationTest, LinksInFramesAreNeverRouted)
{
    int visits = 0;
    for (auto const* const frame : { "#frame-same", "#frame-cross", "#frame-sandboxed" }) {
        SCOPED_TRACE(frame);
        clickInFrame(frame);
        ++visits;
        waitUntil([&] { return requestCount("news.example", "/story") == visits; }, "page in the frame");
        EXPECT_THAT(workspace.opened, IsEmpty());
        EXPECT_EQ(mail().url()->host(), "mail.google.com");
    }
}

TEST_F(NavigationTest, ClicksThatAScriptMakesCountLikeTheUsers)
{
    evaluate(mail(), "document.querySelector('#frame-same').contentDocument.querySelector('#frame-link').click()");
    waitUntil([&] { return requestCount("news.example", "/story") == 1; }, "page in the frame");
    EXPECT_THAT(workspace.opened, IsEmpty());
    for (auto const* const link : { "document.querySelector('#link-foreign')",
             "Object.assign(document.createElement('a'), { href: 'https://news.example/story' })" }) {
        SCOPED_TRACE(link);
        workspace.opened.clear();
        evaluate(mail(), std::string(link) + ".click()");
        waitUntil([&] { return opened("https://news.example/story"); }, "browser");
    }
    EXPECT_EQ(requestCount("news.example", "/story"), 1);
}

TEST_F(NavigationTest, AScriptMayLeadThePageAnywhereOnTheWebOnly)
{
    // A script that the application runs counts as a gesture; the engine lets it last for a second.
    evaluate(mail(), "void setTimeout(() => location = 'ssh://host', 1500)");
    waitUntil([&] { return !log.empty(); }, "log line");
    EXPECT_THAT(log, ElementsAre("[Navigation] refused a \"ssh\" address that no one clicked"));
    EXPECT_THAT(workspace.opened, IsEmpty());

    evaluate(mail(), "void setTimeout(() => location = 'tarn-channel://click/', 0)");
    evaluate(mail(), "void setTimeout(() => location = 'https://news.example/story', 100)");
    waitUntil([&] { return mail().url()->host() == "news.example"; }, "the script's way");
    EXPECT_THAT(workspace.opened, IsEmpty());
}

TEST_F(NavigationTest, APageCannotUseTheChannelOfTheApplication)
{
    EXPECT_EQ(evaluate(mail(),
                  "fetch('tarn-channel://click/', { method: 'POST', body: 'guess\\n{\"sequence\":1,\"sub\":true}' })"
                  ".then(() => 'taken', () => 'refused')"),
        "refused");
    // A forged click would make this link one of a frame.
    click(mail(), "#link-foreign");
    waitUntil([&] { return opened("https://news.example/story"); }, "browser");
}

TEST_F(NavigationTest, CommandsMoveThroughTheHistory)
{
    auto const first = mail().url()->string();
    auto const enabled = [&](char const* name) { return window().lookup_action(name)->property_enabled().get_value(); };
    EXPECT_FALSE(enabled("go-forward"));
    click(mail(), "#link-same");
    waitUntil([&] { return mail().url()->string() != first && enabled("go-back"); }, "second page");
    press("ctrl+bracketleft");
    waitUntil([&] { return mail().url()->string() == first && enabled("go-forward"); }, "first page again");
    // The engine forgets a step that is asked for while the one before is under way.
    waitForPage(GoogleApp::mail);
    press("ctrl+bracketright");
    waitUntil([&] { return mail().url()->string() != first && !enabled("go-forward"); }, "second page again");
}

}
}
