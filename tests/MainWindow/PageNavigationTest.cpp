#include "MainWindow/PageNavigation.h"

#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeWebView.h"
#include "Fakes/ManualRunLoop.h"
#include "MainWindow/SessionRefresher.h"
#include "MainWindow/WebProcessRecovery.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using platform::MouseButton;
using platform::NavigationAction;
using platform::NavigationPolicy;
using platform::NavigationType;
using platform::TargetFrame;
using testing::ElementsAre;
using testing::IsEmpty;

class PageNavigationTest : public testing::Test, protected SessionRefresher::Host {
protected:
    PageNavigationTest()
    {
        view.setNavigationDelegate(&navigation);
        view.currentUrl = Url::parse("https://mail.google.com/mail/u/0/");
        navigation.onAsk = [this](Url const& url) { asked.push_back(url.string()); };
    }
    std::chrono::steady_clock::time_point now() const override { return runLoop.now(); }
    void reloadOtherApps(platform::WebView const&) override { }

    test::ManualRunLoop runLoop;
    test::FakeWorkspace workspace;
    std::vector<std::string> log;
    std::vector<std::string> asked;
    SessionRefresher session { *this };
    WebProcessRecovery recovery { runLoop };
    PageNavigation navigation { workspace, session, recovery,
        [this](std::string const& line) { log.push_back(line); } };
    test::FakeWebView view;
};

constexpr char const* mailPage = "https://mail.google.com/mail/u/0/#inbox/1";
constexpr char const* calendarPage = "https://calendar.google.com/calendar/u/0/r/day";
constexpr char const* foreignPage = "https://news.example/story";
constexpr char const* wrappedPage = "https://www.google.com/url?q=https%3A%2F%2Fnews.example%2Fstory";

TEST_F(PageNavigationTest, ActsOnWhatThePolicySays)
{
    struct Case {
        char const* what;
        NavigationAction action;
        NavigationPolicy policy;
        std::vector<std::string> opened;
        std::vector<std::string> asked;
    };
    auto const link = [](char const* url) {
        return NavigationAction {
            .url = url, .type = NavigationType::linkActivated, .button = MouseButton::primary, .userGesture = true
        };
    };
    auto const with = [](NavigationAction action, auto change) {
        change(action);
        return action;
    };
    Case const cases[] {
        { "no address", {}, NavigationPolicy::allow, {}, {} },
        { "a link within the app", link(mailPage), NavigationPolicy::allow, {}, {} },
        { "a link into another app", link(calendarPage), NavigationPolicy::cancel, {}, { calendarPage } },
        { "a foreign link", link(foreignPage), NavigationPolicy::cancel, { foreignPage }, {} },
        { "a wrapped foreign link", link(wrappedPage), NavigationPolicy::cancel, { foreignPage }, {} },
        { "a sign-in link", link("https://accounts.google.com/ServiceLogin"), NavigationPolicy::allow, {}, {} },
        { "a script's way to a foreign page", { .url = foreignPage }, NavigationPolicy::allow, {}, {} },
        { "a link in a frame", with(link(foreignPage), [](auto& a) { a.targetFrame = TargetFrame::sub; }),
            NavigationPolicy::allow, {}, {} },
        { "a command click in a frame",
            with(link(foreignPage),
                [](auto& a) {
                    a.targetFrame = TargetFrame::sub;
                    a.commandKey = true;
                }),
            NavigationPolicy::allow, {}, {} },
        { "a command click within the app", with(link(mailPage), [](auto& a) { a.commandKey = true; }),
            NavigationPolicy::cancel, { mailPage }, {} },
        { "a command click on a wrapped link", with(link(wrappedPage), [](auto& a) { a.commandKey = true; }),
            NavigationPolicy::cancel, { foreignPage }, {} },
        { "a middle click within the app", with(link(mailPage), [](auto& a) { a.button = MouseButton::middle; }),
            NavigationPolicy::cancel, { mailPage }, {} },
        { "a telephone link", link("tel:+123"), NavigationPolicy::cancel, { "tel:+123" }, {} },
        { "a telephone link with the command key", with(link("tel:+123"), [](auto& a) { a.commandKey = true; }),
            NavigationPolicy::cancel, { "tel:+123" }, {} },
        { "a script's way to a program, no gesture", { .url = "ssh://host" }, NavigationPolicy::cancel, {}, {} },
        { "a script's way to a program in a click", { .url = "ssh://host", .userGesture = true },
            NavigationPolicy::cancel, { "ssh://host" }, {} },
        { "a file behind a redirect", link("https://www.google.com/url?q=file:///etc/passwd"), NavigationPolicy::cancel,
            {}, {} },
        { "a script behind a redirect", link("https://www.google.com/url?q=javascript:alert(1)"),
            NavigationPolicy::cancel, {}, {} },
        { "a link to a file", link("file:///etc/passwd"), NavigationPolicy::cancel, {}, {} },
        { "an unreadable address", link("https://exa mple/"), NavigationPolicy::cancel, {}, {} },
    };
    for (auto const& [what, action, policy, opened, expectedQuestions] : cases) {
        SCOPED_TRACE(what);
        workspace.opened.clear();
        asked.clear();
        EXPECT_EQ(view.decide(action), policy);
        EXPECT_EQ(workspace.opened, opened);
        EXPECT_EQ(asked, expectedQuestions);
    }
}

TEST_F(PageNavigationTest, NewWindowsFollowThePopupRule)
{
    auto const request = [&](char const* url) {
        workspace.opened.clear();
        asked.clear();
        navigation.requestNewWindow(view, { .url = url, .userGesture = true });
    };
    request(wrappedPage);
    EXPECT_THAT(workspace.opened, ElementsAre(foreignPage));
    request(calendarPage);
    EXPECT_THAT(asked, ElementsAre(calendarPage));
    EXPECT_THAT(workspace.opened, IsEmpty());
    for (auto const* const inside : { "", "about:blank", mailPage, "https://login.microsoftonline.com/x" }) {
        request(inside);
        EXPECT_THAT(workspace.opened, IsEmpty()) << inside;
        EXPECT_THAT(asked, IsEmpty()) << inside;
    }
}

TEST_F(PageNavigationTest, AFailedLoadSaysWhyAndCanBeRetried)
{
    navigation.didFail(view, { .url = foreignPage, .reason = "Could not connect" });
    ASSERT_TRUE(view.currentNotice);
    EXPECT_EQ(view.currentNotice->text, std::string("Could not connect\n") + foreignPage);
    view.currentNotice->onButton();
    EXPECT_THAT(view.events, ElementsAre(std::string("load ") + foreignPage));
}

TEST_F(PageNavigationTest, APageThatEndsAgainAndAgainIsGivenUp)
{
    for (std::size_t i = 0; i < WebProcessRecovery::reloadsPerWindow; ++i) {
        view.terminate();
        EXPECT_FALSE(view.currentNotice);
        runLoop.advance(std::chrono::seconds(1));
    }
    view.terminate();
    EXPECT_TRUE(view.currentNotice);
    EXPECT_EQ(view.events.size(), WebProcessRecovery::reloadsPerWindow);

    // The button starts afresh.
    view.currentNotice->onButton();
    view.terminate();
    EXPECT_FALSE(view.currentNotice);
    EXPECT_EQ(view.events.size(), WebProcessRecovery::reloadsPerWindow + 2);
}

TEST_F(PageNavigationTest, OneCrashNowAndThenIsAlwaysReloaded)
{
    for (int i = 0; i < 20; ++i) {
        view.terminate();
        runLoop.advance(WebProcessRecovery::window / 2);
    }
    EXPECT_FALSE(view.currentNotice);
    EXPECT_EQ(view.events.size(), 20);
}

TEST_F(PageNavigationTest, WhereNoPageCanRunTheReasonIsShownAtOnce)
{
    view.terminate({ .reason = platform::ProcessTermination::Reason::cannotStart, .explanation = "no namespaces" });
    ASSERT_TRUE(view.currentNotice);
    EXPECT_EQ(view.currentNotice->text, "no namespaces");
    EXPECT_THAT(view.events, IsEmpty());
}

}
}
