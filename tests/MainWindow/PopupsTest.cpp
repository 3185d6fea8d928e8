#include "App/MainMenu.h"
#include "Fakes/FakeSurroundings.h"
#include "MainWindow/MainWindowController.h"
#include "Profiles/DataStoreRemoval.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using platform::Command;
using platform::NavigationAction;
using platform::NavigationPolicy;
using platform::NavigationType;
using platform::PageOrigin;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char const* signInPage = "https://accounts.google.com/ServiceLogin";
constexpr char const* ssoPage = "https://company.okta.com/login";
constexpr char const* newsPage = "https://news.example/story";

class PopupsTest : public testing::Test, protected test::FakeSurroundings {
protected:
    PopupsTest() { mail().currentUrl = Url::parse("https://mail.google.com/mail/u/0/"); }

    test::FakeWebView& mail() { return *engine.views[0]; }
    PopupList& popups() { return controller->popups(); }
    // What the engine does for window.open; nothing when the application refuses.
    test::FakeWebView* openFrom(test::FakeWebView& opener, char const* url, platform::WindowFeatures features = {})
    {
        platform::WebViewConfiguration configuration;
        configuration.opener = &opener;
        auto const index = std::ranges::find(engine.views, &opener) - engine.views.begin();
        configuration.dataStore = engine.dataStore(engine.storeOfView[static_cast<std::size_t>(index)]);
        auto* const view = opener.uiDelegate->createWebView(opener, configuration, { .url = url });
        if (!view)
            return nullptr;
        EXPECT_EQ(engine.configurations.back().opener, &opener);
        engine.views.back()->uiDelegate->readyToShow(*view, features);
        return engine.views.back();
    }
    test::PopupState& window(std::size_t index) { return *windows.popups[index]; }

    platform::MenuBar menuBar { MainMenu::build() };
    ProfileStore profiles { folder.path(), storeEnvironment() };
    std::unique_ptr<MainWindowController> controller { std::make_unique<MainWindowController>(
        profiles, windowEnvironment(menuBar)) };
};

TEST_F(PopupsTest, AWindowHasTheSizeThatThePageAskedFor)
{
    for (auto const& [features, width, height] : {
             std::tuple { platform::WindowFeatures {}, 900, 700 },
             std::tuple { platform::WindowFeatures { .width = 500 }, 500, 700 },
             std::tuple { platform::WindowFeatures { .width = 420, .height = 330 }, 420, 330 },
         }) {
        auto* const view = openFrom(mail(), "", features);
        auto& shown = *windows.popups.back();
        EXPECT_EQ(shown.content, view);
        EXPECT_EQ(shown.width, width);
        EXPECT_EQ(shown.height, height);
        view->uiDelegate->readyToShow(*view, { .width = 10, .height = 10 });
        EXPECT_EQ(shown.width, width);
        EXPECT_EQ(shown.presented, 1) << "the engine may say so twice";
    }
}

TEST_F(PopupsTest, TheTitleBarShowsWhoseThePageIs)
{
    auto* const view = openFrom(mail(), signInPage);
    auto& shown = window(0);
    EXPECT_EQ(shown.origin, PageOrigin {}) << "nothing has come yet";
    for (auto const& [url, text, connection] : {
             std::tuple { signInPage, "accounts.google.com", PageOrigin::Connection::secure },
             std::tuple { "http://login.example/", "login.example", PageOrigin::Connection::insecure },
             // With the Cyrillic letters that look like "goo" and "e".
             std::tuple { "https://gооglе.com/", "xn--ggl-tdd6ba.com", PageOrigin::Connection::secure },
             std::tuple { "about:blank", "about:blank", PageOrigin::Connection::none },
         }) {
        view->commit(url);
        EXPECT_EQ(shown.origin.text, text);
        EXPECT_EQ(shown.origin.connection, connection);
    }
    view->setTitle("Sign in");
    EXPECT_EQ(shown.title, "Sign in");
    view->currentTitle.reset();
    view->onTitleChange();
    EXPECT_EQ(shown.title, "");
}

TEST_F(PopupsTest, LinksOfAPopupStayWithGoogleAndTheSignIn)
{
    auto* const view = openFrom(mail(), signInPage);
    view->visit(signInPage);
    auto const link = [](char const* url, bool commandKey = false, platform::TargetFrame frame = {}) {
        return NavigationAction { .url = url,
            .type = NavigationType::linkActivated,
            .targetFrame = frame,
            .commandKey = commandKey,
            .userGesture = true };
    };
    struct Case {
        NavigationAction action;
        NavigationPolicy policy;
        std::vector<std::string> opened;
    };
    auto const allow = NavigationPolicy::allow;
    auto const cancel = NavigationPolicy::cancel;
    for (auto const& [action, policy, opened] : {
             Case { {}, allow, {} },
             Case { { .url = newsPage }, allow, {} },
             Case { link(ssoPage), allow, {} },
             Case { link("https://calendar.google.com/"), allow, {} },
             Case { link("https://calendar.google.com/", true), cancel, { "https://calendar.google.com/" } },
             Case { link(newsPage), cancel, { newsPage } },
             Case { link("https://www.google.com/url?q=https%3A%2F%2Fnews.example%2Fstory"), cancel, { newsPage } },
             Case { link(newsPage, false, platform::TargetFrame::sub), allow, {} },
             Case { link("tel:+1"), cancel, { "tel:+1" } },
             Case { { .url = "tel:+1" }, cancel, {} },
         }) {
        workspace.opened.clear();
        EXPECT_EQ(view->decide(action), policy) << action.url;
        EXPECT_EQ(workspace.opened, opened) << action.url;
    }
}

TEST_F(PopupsTest, AWindowClosesByItselfByItsPageAndByItsKey)
{
    for (auto const& close : std::vector<std::function<void(test::FakeWebView&)>> {
             [](auto& view) { view.uiDelegate->didClose(view); },
             [this](auto&) { windows.popups.back()->menuBar->perform(Command::closeWindow, 0); },
             [this](auto&) { popups().find(*engine.views.back())->close(); },
         }) {
        close(*openFrom(mail(), ""));
        EXPECT_EQ(popups().size(), 0);
        EXPECT_FALSE(windows.popups.back()->ended) << "it may be in the middle of a call";
        runLoop.advance({});
        EXPECT_TRUE(windows.popups.back()->ended);
    }
    EXPECT_EQ(engine.views[0], &mail());
}

TEST_F(PopupsTest, TheCommandsOfAPopupAreForItAlone)
{
    auto* const view = openFrom(mail(), signInPage);
    auto& commands = *window(0).menuBar;
    EXPECT_FALSE(commands.validate(Command::goBack, 0)->enabled);
    view->load({ .url = *Url::parse(signInPage) });
    view->arrive();
    view->load({ .url = *Url::parse(ssoPage) });
    view->arrive();
    EXPECT_TRUE(commands.validate(Command::goBack, 0)->enabled);
    commands.perform(Command::goBack, 0);
    EXPECT_EQ(view->events.back(), "back");
    commands.perform(Command::zoomIn, 0);
    EXPECT_GT(view->zoom, 1.0);
    EXPECT_THAT(profiles.active().zoom, IsEmpty());
    EXPECT_FALSE(commands.perform(Command::quit, 0)) << "the platform's own";
    view->terminate();
    runLoop.advance(WebProcessRecovery::pause);
    EXPECT_EQ(view->events.back(), "reload");
}

TEST_F(PopupsTest, AWindowKeepsItsProfileAndEndsWithIt)
{
    auto const home = profiles.activeID();
    auto const work = profiles.create("Work", { GoogleApp::mail }).id;
    auto* const first = openFrom(mail(), signInPage);
    profiles.setActive(work);
    EXPECT_FALSE(window(0).ended);
    auto* const second = openFrom(*first, ssoPage);
    EXPECT_EQ(popups().profileOf(*second), home) << "of its opener, not of the active one";
    controller->openWindow(*Url::parse("https://mail.google.com/new"));
    auto* const third = engine.views.back();
    EXPECT_EQ(popups().profileOf(*third), work);
    EXPECT_THAT(third->events, ElementsAre("load https://mail.google.com/new"));
    EXPECT_EQ(window(2).presented, 1);

    controller->bringForward(*second);
    EXPECT_EQ(window(1).presented, 2);
    std::optional<std::string> result;
    controller->deleteProfile(home, [&](auto error) { result = error.value_or("done"); });
    EXPECT_EQ(popups().size(), 1);
    EXPECT_TRUE(window(0).ended && window(1).ended);
    engine.answerRemovals();
    EXPECT_EQ(result, "done") << "nothing of it is in use any more";

    controller.reset();
    EXPECT_TRUE(window(2).ended);
}

TEST_F(PopupsTest, NoPageFloodsTheScreen)
{
    for (std::size_t i = 0; i < PopupList::most + 5; ++i)
        openFrom(mail(), "");
    EXPECT_EQ(popups().size(), PopupList::most);
    EXPECT_EQ(log.size(), 5);
}

TEST_F(PopupsTest, TheUserSaysWhereALinkOpens)
{
    constexpr char const* page = "https://calendar.google.com/event?eid=1";
    controller->showWindow();
    auto* const popup = openFrom(mail(), signInPage);
    popup->visit("https://mail.google.com/");
    EXPECT_EQ(openFrom(*popup, page), nullptr);
    EXPECT_EQ(openFrom(mail(), page), nullptr);
    ASSERT_EQ(panels.alerts.size(), 1) << "one at a time";
    auto const& shown = panels.alerts[0];
    EXPECT_EQ(shown.panel.message, "Where would you like to open this link?");
    EXPECT_EQ(shown.panel.informativeText, page);
    std::vector<std::string> titles;
    for (auto const& button : shown.panel.buttons)
        titles.push_back(button.title);
    EXPECT_THAT(titles, ElementsAre("New Window", "Default Browser", "Cancel"));
    EXPECT_TRUE(shown.parent == platform::SheetParent(&controller->window()));
    panels.press(2);
    EXPECT_EQ(popups().size(), 1);
    EXPECT_THAT(workspace.opened, IsEmpty());

    windows.main.visible = false;
    openFrom(mail(), page);
    EXPECT_TRUE(panels.alerts[0].parent == platform::SheetParent()) << "a hidden window carries no sheet";
    panels.press(1);
    EXPECT_THAT(workspace.opened, ElementsAre(page));
    openFrom(mail(), page);
    panels.press(0);
    EXPECT_EQ(popups().size(), 2);
    EXPECT_THAT(engine.views.back()->events, ElementsAre(std::string("load ") + page));

    openFrom(mail(), page);
    controller.reset();
    panels.press(0);
    EXPECT_EQ(windows.popups.size(), 2);
}

}
}
