#include "MainWindow/PageNavigation.h"

#include "Downloads/DownloadManager.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakePanels.h"
#include "Fakes/FakeWebView.h"
#include "Fakes/ManualRunLoop.h"
#include "MainWindow/SessionRefresher.h"
#include "Platform/WebViewConfiguration.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using platform::MouseButton;
using platform::NavigationAction;
using platform::NavigationPolicy;
using platform::NavigationType;
using platform::TargetFrame;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class PageNavigationTest : public testing::Test, protected SessionRefresher::Host {
protected:
    PageNavigationTest()
    {
        view.setNavigationDelegate(&navigation);
        view.currentUrl = Url::parse("https://mail.google.com/mail/u/0/");
        view.setUIDelegate(&navigation);
        navigation.onAsk = [this](Url const& url) { asked.push_back(url.string()); };
    }
    std::chrono::steady_clock::time_point now() const override { return runLoop.now(); }
    void reloadApps(std::function<bool(platform::WebView const&)> const&) override { }

    test::ManualRunLoop runLoop;
    test::FakeWorkspace workspace;
    test::FakePanels panels;
    test::FakeNetworkMonitor networkMonitor;
    TemporaryFolder folder;
    std::vector<std::string> log;
    std::vector<std::string> asked;
    Log const addToLog { [this](std::string const& line) { log.push_back(line); } };
    SiteDecisions decisions { folder.path(), addToLog };
    Uuid profile { Uuid::random() };
    ProfileOfView const profileOf { [this](platform::WebView const&) { return profile; } };
    SessionRefresher session { *this };
    FirstPage firstPage {};
    WebProcessRecovery recovery { runLoop, firstPage };
    ExternalLinks externalLinks { workspace, panels, decisions, profileOf, addToLog };
    PermissionQuestion permissions { panels, decisions, profileOf, addToLog };
    FailedLoads failedLoads { networkMonitor, runLoop };
    test::FakeUserDefaults defaults;
    test::FakeDockTile dockTile;
    DownloadManager downloads { { .panels = panels,
        .defaults = defaults,
        .dockTile = dockTile,
        .workspace = workspace,
        .userFolder = folder.path(),
        .log = addToLog } };
    PageNavigation navigation { { .downloads = downloads,
                                    .externalLinks = externalLinks,
                                    .failedLoads = failedLoads,
                                    .firstPage = firstPage,
                                    .panels = panels,
                                    .permissions = permissions,
                                    .recovery = recovery,
                                    .log = addToLog },
        session };
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
        { "a script's way to a telephone in a click", { .url = "tel:+123", .userGesture = true },
            NavigationPolicy::cancel, { "tel:+123" }, {} },
        { "a telephone link in a frame", with(link("tel:+123"), [](auto& a) { a.targetFrame = TargetFrame::sub; }),
            NavigationPolicy::cancel, { "tel:+123" }, {} },
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
    test::FakeWebView popup;
    navigation.onPopup = [&](platform::WebView& opener, platform::WebViewConfiguration const&) {
        EXPECT_EQ(&opener, &view);
        return &popup;
    };
    auto const request = [&](char const* url, bool commandKey = false) {
        workspace.opened.clear();
        asked.clear();
        return navigation.createWebView(view, {},
            { .url = url,
                .type = NavigationType::linkActivated,
                .commandKey = commandKey,
                .button = MouseButton::primary,
                .userGesture = true });
    };
    EXPECT_EQ(request(wrappedPage), nullptr);
    EXPECT_THAT(workspace.opened, ElementsAre(foreignPage));
    EXPECT_EQ(request(calendarPage), nullptr);
    EXPECT_THAT(asked, ElementsAre(calendarPage));
    EXPECT_THAT(workspace.opened, IsEmpty());
    for (auto const* const inside : { "", "about:blank", mailPage, "https://login.microsoftonline.com/x" }) {
        EXPECT_EQ(request(inside), &popup) << inside;
        EXPECT_THAT(workspace.opened, IsEmpty()) << inside;
        EXPECT_THAT(asked, IsEmpty()) << inside;
    }
    EXPECT_EQ(request(mailPage, true), nullptr);
    EXPECT_THAT(workspace.opened, ElementsAre(mailPage));
    EXPECT_EQ(request("https://exa mple/"), nullptr);
}

TEST_F(PageNavigationTest, AnotherProgramIsAskedAboutOncePerSiteAndProfile)
{
    NavigationAction const action { .url = "zoommtg://join", .userGesture = true };
    auto const opened = [&] { return workspace.opened.size(); };
    EXPECT_EQ(view.decide(action), NavigationPolicy::cancel);
    EXPECT_THAT(panels.alerts[0].panel.informativeText, HasSubstr("mail.google.com"));
    EXPECT_THAT(panels.alerts[0].panel.message, HasSubstr("zoommtg"));
    view.decide(action);
    EXPECT_EQ(panels.alerts.size(), 1) << "a page cannot pile up questions";
    panels.press(0, {}, true);
    EXPECT_EQ(opened(), 0);

    view.decide(action);
    panels.press(1);
    EXPECT_EQ(opened(), 1);
    view.decide(action);
    panels.press(1, {}, true);
    EXPECT_EQ(opened(), 2);
    view.decide(action);
    EXPECT_EQ(opened(), 3);

    view.decide({ .url = "ssh://host", .userGesture = true });
    EXPECT_EQ(panels.alerts.size(), 1) << "another scheme";
    panels.dismiss(panels.alerts[0].parent);
    view.currentUrl = Url::parse("https://drive.google.com/");
    view.decide(action);
    EXPECT_EQ(panels.alerts.size(), 1) << "another site";
    panels.press(0);
    view.currentUrl = Url::parse(mailPage);
    profile = Uuid::random();
    view.decide(action);
    EXPECT_EQ(panels.alerts.size(), 1) << "another profile";
    panels.press(0);
    EXPECT_EQ(opened(), 3);
}

TEST_F(PageNavigationTest, PermissionsAreAskedForOneByOneAndRemembered)
{
    using platform::Permission;
    using platform::PermissionState;
    std::vector<std::string> answers;
    auto const ask = [&](std::vector<Permission> what) {
        navigation.requestPermission(view, { std::move(what) },
            Reply<bool>([&](bool allowed) { answers.emplace_back(allowed ? "yes" : "no"); }, false));
    };
    auto const state = [&](Permission what) { return navigation.permissionState(view, what); };
    ask({ Permission::camera, Permission::microphone });
    ask({ Permission::location });
    ask({ Permission::camera });
    ASSERT_EQ(panels.alerts.size(), 1);
    EXPECT_EQ(panels.alerts[0].panel.message, "Let mail.google.com use the camera and use the microphone?");
    EXPECT_EQ(panels.alerts[0].panel.buttons[0].title, "Don’t Allow") << "what Return means";
    panels.press(1);
    EXPECT_THAT(answers, ElementsAre("yes"));
    EXPECT_THAT(panels.alerts[0].panel.message, HasSubstr("know where you are"));
    panels.dismiss(&view);
    EXPECT_THAT(answers, ElementsAre("yes", "no", "yes")) << "the camera is known by now";
    EXPECT_EQ(state(Permission::location), PermissionState::ask) << "nobody has answered";
    EXPECT_EQ(state(Permission::camera), PermissionState::granted);

    ask({ Permission::location });
    panels.press(0);
    ask({ Permission::location, Permission::camera });
    EXPECT_THAT(panels.alerts, IsEmpty());
    EXPECT_THAT(answers, ElementsAre("yes", "no", "yes", "no", "no"));
    EXPECT_EQ(state(Permission::location), PermissionState::denied);

    view.currentUrl = Url::parse("http://mail.google.com/");
    ask({ Permission::camera });
    EXPECT_EQ(answers.back(), "no");
    EXPECT_EQ(state(Permission::camera), PermissionState::denied) << "anybody could be that site";

    // Of what another page asked before it was left, nothing is shown any more.
    view.currentUrl = Url::parse(mailPage);
    ask({ Permission::screen });
    ask({ Permission::pointerLock });
    view.currentUrl = Url::parse(foreignPage);
    panels.press(0);
    EXPECT_THAT(panels.alerts, IsEmpty());
    EXPECT_EQ(answers.size(), 8);

    SiteDecisions later { folder.path(), addToLog };
    EXPECT_EQ(later.find(profile, "mail.google.com", "camera"), true);
    EXPECT_EQ(later.find(profile, "mail.google.com", "location"), false);
    later.remove(profile);
    EXPECT_EQ(SiteDecisions(folder.path(), addToLog).find(profile, "mail.google.com", "camera"), std::nullopt);
}

TEST_F(PageNavigationTest, AFailedLoadSaysWhyAndCanBeRetried)
{
    using Kind = platform::LoadFailure::Kind;
    struct Case {
        Kind kind;
        bool isOnline;
        char const* words;
    };
    for (auto const& [kind, isOnline, words] : {
             Case { Kind::nameNotFound, true, "No site of this name was found." },
             Case { Kind::nameNotFound, false, "not connected to a network" },
             Case { Kind::timedOut, true, "took too long" },
             Case { Kind::notSecure, false, "not secure" },
             Case { Kind::other, true, "engine's words" },
         }) {
        networkMonitor.available = isOnline;
        navigation.didFail(view, { .url = foreignPage, .kind = kind, .reason = "engine's words" });
        ASSERT_TRUE(view.currentNotice);
        EXPECT_THAT(view.currentNotice->text, AllOf(HasSubstr(words), EndsWith(std::string("\n") + foreignPage)));
    }
    view.currentNotice->onButton();
    EXPECT_THAT(view.events, ElementsAre(std::string("load ") + foreignPage));
}

TEST_F(PageNavigationTest, WhenTheNetworkComesBackFailedPagesLoadByThemselves)
{
    using Kind = platform::LoadFailure::Kind;
    test::FakeWebView failed;
    test::FakeWebView untrusted;
    test::FakeWebView recovered;
    auto ended = std::make_unique<test::FakeWebView>();
    for (auto* const one : { &failed, &untrusted, &recovered, ended.get() }) {
        one->setNavigationDelegate(&navigation);
        auto const kind = one == &untrusted ? Kind::notSecure : Kind::nameNotFound;
        navigation.didFail(*one, { .url = mailPage, .kind = kind });
    }
    recovered.commit(mailPage);
    ended.reset();

    networkMonitor.change(false);
    runLoop.advance(FailedLoads::settlingTime);
    EXPECT_THAT(failed.events, IsEmpty());
    for (int i = 0; i < 3; ++i)
        networkMonitor.change(true);
    runLoop.advance(FailedLoads::settlingTime);
    EXPECT_THAT(failed.events, ElementsAre(std::string("load ") + mailPage)) << "once for one event";
    for (auto const* const other : { &untrusted, &recovered, &view })
        EXPECT_THAT(other->events, IsEmpty());

    navigation.didFail(failed, { .url = mailPage, .kind = Kind::timedOut });
    networkMonitor.change(true);
    runLoop.advance(FailedLoads::settlingTime);
    EXPECT_EQ(failed.events.size(), 2) << "it failed again";
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
    EXPECT_EQ(view.events.size(), WebProcessRecovery::reloadsPerWindow + 1) << "not on the process that ended with it";
    runLoop.advance(WebProcessRecovery::pause);
    EXPECT_EQ(view.events.size(), WebProcessRecovery::reloadsPerWindow + 2);
}

TEST_F(PageNavigationTest, SafeRenderingIsOfferedWherePagesEndBeforeTheFirstHasCome)
{
    int shown = 0;
    int restarts = 0;
    firstPage.onShown = [&] { ++shown; };
    recovery.restartSafely = [&] { ++restarts; };
    auto const giveUp = [&] {
        while (!view.currentNotice)
            view.terminate();
    };
    view.navigationDelegate->didCommit(view);
    giveUp();
    EXPECT_EQ(shown, 1) << "the notice";
    view.currentNotice->onButton();
    EXPECT_EQ(restarts, 1);
    EXPECT_EQ(view.currentNotice->secondButton, "Reload");
    view.currentNotice->onSecondButton();

    view.navigationDelegate->didFinish(view);
    view.showNotice({});
    giveUp();
    EXPECT_EQ(view.currentNotice->button, "Reload");
    EXPECT_EQ(view.currentNotice->secondButton, "");
    EXPECT_EQ(shown, 1);
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
