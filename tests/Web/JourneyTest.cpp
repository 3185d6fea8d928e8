#include "Web/WebTest.h"

#include <gmock/gmock.h>
#include <gtkmm/button.h>

#include <cstdlib>
#include <fstream>

namespace tarn {
namespace {

using platform::Command;

class JourneyTest : public test::WebTest { };

class SignInTest : public test::WebTest {
protected:
    SignInTest()
        : WebTest(stage::SignIn::byHand)
    {
    }

    // As a user does it, on the page the app shows.
    void signIn(GoogleApp app, std::string const& account)
    {
        auto& page = view(app);
        auto const shows = [&](char const* selector) {
            return page.url() && page.url()->host() == "accounts.google.com"
                && !webkit_web_view_is_loading(page.engineView())
                && evaluate(page, std::string("!!document.querySelector('") + selector + "')") == "true";
        };
        waitUntil([&] { return shows("[data-account]"); }, "list of accounts");
        click(page, "[data-account=" + account + "]");
        waitUntil([&] { return shows("#password"); }, "password page");
        click(page, "#next");
        waitForPage(app);
    }
};

TEST_F(JourneyTest, SevenAppsLoadFromTheirTrueHosts)
{
    launch();
    for (auto const app : GoogleApp::allCases) {
        open(app);
        auto const host = std::string(app.url().host());
        auto const request = std::ranges::find_if(
            stage.requests(), [&](auto const& asked) { return asked.host == host && asked.account == "ada"; });
        ASSERT_NE(request, stage.requests().end()) << host;
        EXPECT_TRUE(request->userAgent.ends_with(WebViewPool::applicationNameForUserAgent)) << request->userAgent;
        EXPECT_TRUE(GTK_WIDGET(view(app).engineView()) == gtk_window_get_focus(GTK_WINDOW(window().gobj())))
            << "typing goes to the page";
    }
    EXPECT_EQ(requestCount("mail.google.com", "/"), 2) << "once to the sign-in, once back from it";
}

TEST_F(JourneyTest, SwitchingKeepsTheHalfTypedTextAndThePlace)
{
    launch();
    open(GoogleApp::mail);
    open(GoogleApp::keep);
    auto& keep = view(GoogleApp::keep);
    evaluate(keep, "(document.querySelector('textarea').focus(), scrollTo(0, 120))");
    waitUntil([&] { return window().is_active(); }, "active window");
    type("half a thou");
    waitUntil([&] { return evaluate(keep, "document.querySelector('textarea').value") == "half a thou"; }, "text");
    auto const place = evaluate(keep, "scrollY");
    auto const loads = requestCount("keep.google.com", "/");

    press("ctrl+1");
    waitUntil([&] { return controller().current() == GoogleApp::mail; }, "Ctrl+1");
    waitUntil([&] { return evaluate(keep, "document.visibilityState") == "hidden"; }, "hidden page");
    press("ctrl+5");
    waitUntil([&] { return controller().current() == GoogleApp::keep; }, "Ctrl+5");
    waitUntil([&] { return evaluate(keep, "document.visibilityState") == "visible"; }, "visible page");
    type("ght");
    waitUntil([&] { return evaluate(keep, "document.querySelector('textarea').value") == "half a thought"; },
        "typing goes on where it was");
    EXPECT_EQ(evaluate(keep, "scrollY"), place);
    EXPECT_EQ(requestCount("keep.google.com", "/"), loads) << "no reload";
}

TEST_F(JourneyTest, TheMailTitleReachesDockAndSidebar)
{
    launch();
    waitUntil([&] { return dockTile.badge == 3; }, "Ada's unread count");
    EXPECT_TRUE(controller().sidebar().appButtons()[0].showsDot);
    stage.mailboxes().setUnread("ada", 1234);
    waitUntil([&] { return dockTile.badge == 1234; }, "new count");
    stage.mailboxes().setUnread("ada", 0);
    waitUntil([&] { return !dockTile.badge; }, "no count");
    EXPECT_FALSE(controller().sidebar().appButtons()[0].showsDot);
}

TEST_F(JourneyTest, BothProfilesAreStillSignedInAfterARestart)
{
    launch();
    auto const home = profiles().activeID();
    auto const work = profiles().create("Work", { GoogleApp::mail, GoogleApp::keep }).id;
    waitUntil([&] { return dockTile.badge == 3; }, "Ada");
    evaluate(view(GoogleApp::mail), "localStorage.setItem('mark', 'left by Ada')");
    profiles().setActive(work);
    waitUntil([&] { return dockTile.badge == 12; }, "Bo");
    terminate();

    stage.clearRequests();
    launch();
    EXPECT_EQ(profiles().activeID(), work);
    waitUntil([&] { return dockTile.badge == 12; }, "Bo again");
    profiles().setActive(home);
    waitUntil([&] { return dockTile.badge == 3; }, "Ada again");
    EXPECT_EQ(evaluate(view(GoogleApp::mail), "localStorage.getItem('mark')"), "left by Ada");
    EXPECT_EQ(requestCount("accounts.google.com", "/ServiceLogin"), 0);
}

TEST_F(SignInTest, ASignInReloadsTheOtherAppsOnceAndNeverItsOwn)
{
    launch();
    for (auto const app : { GoogleApp::keep, GoogleApp::drive, GoogleApp::mail })
        controller().show(app);
    auto const pageLoads = [&](GoogleApp app) { return requestCount(std::string(app.url().host()), "/"); };
    auto const onAccounts = [&](GoogleApp app) {
        auto& page = view(app);
        return page.url()->host() == "accounts.google.com" && !webkit_web_view_is_loading(page.engineView());
    };
    for (GoogleApp const app : { GoogleApp::keep, GoogleApp::drive, GoogleApp::mail })
        waitUntil([&] { return onAccounts(app); }, "signed-out " + std::string(app.title()));

    signIn(GoogleApp::mail, "ada");
    waitForPage(GoogleApp::keep);
    waitForPage(GoogleApp::drive);
    EXPECT_EQ(pageLoads(GoogleApp::mail), 2) << "signed out, and back from the sign-in";
    EXPECT_EQ(pageLoads(GoogleApp::keep), 2) << "signed out, and taken up by the refresh";
    EXPECT_EQ(pageLoads(GoogleApp::drive), 2);

    // A second sign-in right after: the apps stay as they are.
    open(GoogleApp::drive);
    view(GoogleApp::drive)
        .load({ .url = *Url::parse(
                    "https://accounts.google.com/ServiceLogin?by=hand&continue=https%3A%2F%2Fdrive.google.com%2F") });
    signIn(GoogleApp::drive, "bo");
    auto& drive = view(GoogleApp::drive);
    waitUntil([&] { return evaluate(drive, "document.documentElement.dataset.account") == "bo"; }, "Bo's files");
    EXPECT_EQ(pageLoads(GoogleApp::mail), 2);
    EXPECT_EQ(pageLoads(GoogleApp::keep), 2);
}

TEST_F(SignInTest, SingleSignOnLeadsBackToTheApp)
{
    launch();
    auto& page = view(GoogleApp::mail);
    waitUntil([&] { return page.title() == "Sign in"; }, "sign-in page");
    click(page, "#single-sign-on");
    waitUntil([&] { return page.url()->host() == "login.microsoftonline.com"; }, "sign-in provider in the same view");
    EXPECT_THAT(workspace.opened, testing::IsEmpty());
}

TEST_F(JourneyTest, AKilledWebProcessComesBack)
{
    launch();
    open(GoogleApp::mail);
    auto& mail = view(GoogleApp::mail);
    for (int crash = 1; crash <= 3; ++crash) {
        evaluate(mail, "void (window.mark = 'before')");
        auto const loads = requestCount("mail.google.com", "/");
        test::killWebProcesses();
        waitUntil([&] { return requestCount("mail.google.com", "/") > loads; }, "reload " + std::to_string(crash));
        waitForPage(GoogleApp::mail);
        EXPECT_EQ(evaluate(mail, "window.mark"), "undefined");
        EXPECT_EQ(evaluate(mail, "document.documentElement.dataset.account"), "ada");
    }
    // Once too often: the page is given up, calmly.
    auto const loads = requestCount("mail.google.com", "/");
    test::killWebProcesses();
    auto& stack = static_cast<Gtk::Stack&>(mail.widget());
    waitUntil([&] { return stack.get_visible_child_name() == "notice" && window().is_active(); }, "notice");
    EXPECT_EQ(requestCount("mail.google.com", "/"), loads);
    press("Return");
    waitUntil([&] { return requestCount("mail.google.com", "/") > loads; }, "the notice's button");
    waitForPage(GoogleApp::mail);
    EXPECT_EQ(stack.get_visible_child_name(), "page");
}

// A machine on which the engine's sandbox cannot start, until it can.
class NoSandboxTest : public test::WebTest {
protected:
    NoSandboxTest()
    {
        auto const program = folder / "bwrap";
        std::ofstream(program) << "#!/bin/sh\necho 'bwrap: no namespaces here' >&2\nexit 1\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        setenv("PATH", (folder.path().string() + ":" + m_path).c_str(), 1);
        unsetenv(offSwitch);
        brokenSandbox.emplace();
    }
    ~NoSandboxTest() override { allow(); }

    void allow()
    {
        setenv("PATH", m_path.c_str(), 1);
        if (m_off)
            setenv(offSwitch, "1", 1);
    }
    bool canBeAllowed() const { return !m_off; }

    std::optional<gtk::Sandbox> brokenSandbox;

private:
    static constexpr char const* offSwitch = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";
    std::string m_path { getenv("PATH") };
    bool m_off { getenv(offSwitch) != nullptr };
};

TEST_F(NoSandboxTest, SaysWhatIsMissingInsteadOfShowingBlankPages)
{
    launch(*brokenSandbox);
    auto& stack = static_cast<Gtk::Stack&>(view(GoogleApp::mail).widget());
    waitUntil([&] { return stack.get_visible_child_name() == "notice" && window().is_active(); }, "notice");
    EXPECT_TRUE(stage.requests().empty()) << "no page ran outside a sandbox";
    if (!canBeAllowed())
        GTEST_SKIP() << "this machine has no namespaces to allow";
    allow();
    press("Return");
    waitForPage(GoogleApp::mail);
    EXPECT_EQ(stack.get_visible_child_name(), "page");
}

// All that do something in the window, those in its menus too.
void expectLiveButtons(Gtk::Widget& widget)
{
    auto const* const action
        = GTK_IS_BUTTON(widget.gobj()) ? gtk_actionable_get_action_name(GTK_ACTIONABLE(widget.gobj())) : nullptr;
    EXPECT_TRUE(!action || widget.is_sensitive()) << action;
    for (auto* child = widget.get_first_child(); child; child = child->get_next_sibling())
        expectLiveButtons(*child);
}

TEST_F(JourneyTest, AHiddenWindowComesBackWithItsKeysAndItsSize)
{
    launch();
    open(GoogleApp::mail);
    waitUntil([&] { return window().is_active(); }, "active window");
    press("ctrl+w");
    waitUntil([&] { return !window().is_visible(); }, "hidden window");
    waitUntil([&] { return evaluate(view(GoogleApp::mail), "document.visibilityState") == "hidden"; }, "hidden page");

    delegate->applicationShouldHandleReopen();
    waitUntil([&] { return window().is_visible() && window().is_active(); }, "window");
    press("ctrl+3");
    waitUntil([&] { return controller().current() == GoogleApp::drive; }, "keys after hiding");
    expectLiveButtons(*window().get_titlebar());

    window().maximize();
    waitUntil([&] { return window().is_maximized(); }, "maximised");
    press("ctrl+w");
    waitUntil([&] { return !window().is_visible(); }, "hidden again");
    delegate->applicationShouldHandleReopen();
    waitUntil([&] { return window().is_maximized(); }, "still maximised");
    terminate();
    EXPECT_EQ(defaults.values["TarnMainWindow"], "1300x900 maximized");
}

TEST_F(JourneyTest, AMenuGivesTheFocusBackToThePage)
{
    launch();
    open(GoogleApp::keep);
    waitUntil([&] { return window().is_active(); }, "active window");
    auto& keep = view(GoogleApp::keep);
    evaluate(keep, "document.querySelector('textarea').focus()");
    press("F10");
    auto const inPage
        = [&] { return gtk_window_get_focus(GTK_WINDOW(window().gobj())) == GTK_WIDGET(keep.engineView()); };
    waitUntil([&] { return !inPage(); }, "menu");
    press("Down");
    press("Escape");
    waitUntil(inPage, "focus in the page");
    type("on");
    waitUntil([&] { return evaluate(keep, "document.querySelector('textarea').value") == "on"; }, "text");
}

TEST_F(JourneyTest, TheProfileMenuSwitchesByMouse)
{
    launch();
    auto const work = profiles().create("Work", { GoogleApp::mail }).id;
    waitUntil([&] { return dockTile.badge == 3; }, "Ada");
    waitUntil([&] { return window().is_active(); }, "active window");
    auto& sidebar = *window().get_child()->get_last_child()->get_first_child();
    clickAt(sidebar, 30, sidebar.get_height() - 16 - 18);
    waitUntil([&] { return controller().sidebar().profileButton().isMenuOpen; }, "menu");
    press("Down");
    press("Return");
    waitUntil([&] { return profiles().activeID() == work; }, "second profile");
    waitUntil([&] { return dockTile.badge == 12; }, "Bo");
    waitUntil([&] { return !controller().sidebar().profileButton().isMenuOpen; }, "closed menu");

    // And back from the menu bar, whose menu is replaced by its own item.
    press("alt+p");
    waitUntil([&] { return dynamic_cast<Gtk::Button*>(window().get_focus()) != nullptr; }, "first item");
    press("Return");
    waitUntil([&] { return dockTile.badge == 3; }, "Ada again");
    auto& page = view(GoogleApp::mail).widget();
    waitUntil([&] { return window().get_focus() && window().get_focus()->is_ancestor(page); }, "focus in the page");
}

TEST_F(JourneyTest, ThePromotionCardIsDeclined)
{
    launch();
    open(GoogleApp::mail);
    auto const reported = [&](std::string const& event) {
        return std::ranges::any_of(stage.requests(), [&](auto const& request) {
            return request.path == "/_stage/beacon" && request.body.find('"' + event + '"') != std::string::npos;
        });
    };
    waitUntil([&] { return reported("promotion-dismissed"); }, "declined promotion");
    EXPECT_TRUE(reported("promotion-shown"));
}

TEST_F(JourneyTest, AServerThatCannotBeReachedIsExplained)
{
    launch();
    open(GoogleApp::mail);
    auto& mail = view(GoogleApp::mail);
    auto& stack = static_cast<Gtk::Stack&>(mail.widget());
    auto const* const session = webkit_web_view_get_network_session(mail.engineView());
    auto* const nowhere = webkit_network_proxy_settings_new("http://127.0.0.1:1", nullptr);
    webkit_network_session_set_proxy_settings(
        const_cast<WebKitNetworkSession*>(session), WEBKIT_NETWORK_PROXY_MODE_CUSTOM, nowhere);
    webkit_network_proxy_settings_free(nowhere);
    mail.load({ .url = *Url::parse("https://mail.google.com/unreachable") });
    waitUntil([&] { return stack.get_visible_child_name() == "notice"; }, "notice");
}

}
}
