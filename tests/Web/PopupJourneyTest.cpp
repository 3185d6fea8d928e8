#include "Platform/Gtk/NotificationCenter.h"
#include "Web/FakeNotificationDaemon.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Windows that the mail page opens by real clicks.
class PopupJourneyTest : public test::WebTest {
protected:
    PopupJourneyTest()
    {
        notificationCenter = std::make_unique<gtk::NotificationCenter>(
            Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), TARN_APPLICATION_ID);
        launch();
        open(GoogleApp::mail);
        waitUntil([&] { return window().is_active(); }, "active window");
    }

    gtk::WebView& mail() { return view(GoogleApp::mail); }
    std::size_t count() { return controller().popups().size(); }
    void waitForClosed()
    {
        waitUntil([&] { return count() == 0; }, "closed popup");
        waitUntil([&] { return window().is_active(); }, "active window");
    }
    // Whether a dialog has the keyboard.
    static bool dialogIsActive()
    {
        auto const toplevels = gtk_window_get_toplevels();
        for (guint index = 0; index < g_list_model_get_n_items(toplevels); ++index) {
            auto* const toplevel = g_list_model_get_item(toplevels, index);
            g_object_unref(toplevel);
            if (g_type_is_a(G_OBJECT_TYPE(toplevel), g_type_from_name("AdwMessageDialog"))
                && gtk_window_is_active(GTK_WINDOW(toplevel)))
                return true;
        }
        return false;
    }
    void answer(std::string const& keys)
    {
        waitUntil([] { return dialogIsActive(); }, "question");
        press(keys);
        waitUntil([] { return !dialogIsActive(); }, "answered question");
    }
};

TEST_F(PopupJourneyTest, ASignInThroughAnotherProviderHandsItsResultBackAndCloses)
{
    click(mail(), "#open-sign-in");
    auto& popup = waitForPopup(1, "accounts.google.com");
    EXPECT_EQ(controller().popups().profileOf(popup), profiles().activeID());
    EXPECT_EQ(evaluate(popup, "innerWidth + 'x' + innerHeight"), "520x640");
    EXPECT_EQ(evaluate(popup, "navigator.userAgent"), evaluate(mail(), "navigator.userAgent"));
    click(popup, "#single-sign-on");
    waitForPopup(1, "login.microsoftonline.com");
    click(popup, "#next");
    waitForClosed();
    waitUntil(
        [&] {
            return evaluate(mail(), "document.querySelector('#popup-answer').textContent")
                == "A window said: signed in as bo";
        },
        "result");
    EXPECT_THAT(workspace.opened, IsEmpty());
}

TEST_F(PopupJourneyTest, APopupLeadsItsOwnLife)
{
    auto const mailUrl = mail().url()->string();
    click(mail(), "#open-popup");
    auto& first = waitForPopup(1, "mail.google.com");
    EXPECT_EQ(evaluate(first, "innerWidth + 'x' + innerHeight + document.querySelector('#opener').textContent"),
        "420x360present");
    for (auto const* const arguments : { "click 1", "keydown ctrl click 1 keyup ctrl" }) {
        workspace.opened.clear();
        click(first, "a[href*=news]", arguments);
        waitUntil([&] { return !workspace.opened.empty(); }, "browser");
        EXPECT_THAT(workspace.opened, ElementsAre("https://news.example/story"));
    }

    // A window of the window, at its default size. Its messages and its opener are its own.
    evaluate(first, "void window.open('/_stage/popup.html')");
    auto& second = waitForPopup(2, "mail.google.com");
    EXPECT_EQ(evaluate(second, "innerWidth + 'x' + innerHeight"), "900x700");
    EXPECT_EQ(controller().popups().profileOf(second), profiles().activeID());
    evaluate(first, "void addEventListener('message', ({ data }) => { window.word = data.word })");
    click(second, "#answer");
    waitUntil([&] { return evaluate(second, "document.activeElement.id") == "answer"; }, "focused field");
    type("lake");
    waitUntil([&] { return evaluate(second, "document.querySelector('#answer').value") == "lake"; }, "typed word");
    click(second, "#send");
    waitUntil([&] { return evaluate(first, "window.word") == "lake"; }, "word");

    // The keys act on the window that has them.
    press("ctrl+plus");
    waitUntil([&] { return second.pageZoom() > 1; }, "zoom");
    EXPECT_EQ(mail().pageZoom(), 1);
    press("ctrl+w");
    waitUntil([&] { return count() == 1; }, "closed popup");
    EXPECT_TRUE(window().is_visible());
    click(first, "#close");
    waitForClosed();
    EXPECT_EQ(mail().url()->string(), mailUrl);
}

TEST_F(PopupJourneyTest, APopupOutlivesItsOpenerAndEndsWithItsProfile)
{
    click(mail(), "#open-popup");
    auto& popup = waitForPopup(1, "mail.google.com");
    auto const home = profiles().activeID();
    auto const work = profiles().create("Work", { GoogleApp::mail }).id;
    profiles().setActive(work);
    waitUntil([&] { return dockTile.badge == 12; }, "Bo");
    EXPECT_EQ(evaluate(popup, "document.documentElement.dataset.account + opener"), "adanull");
    evaluate(popup, "void window.open('/_stage/popup.html')");
    auto& next = waitForPopup(2, "mail.google.com");
    EXPECT_EQ(evaluate(next, "document.documentElement.dataset.account"), "ada");
    EXPECT_EQ(controller().popups().profileOf(next), home);

    std::optional<std::string> result;
    controller().deleteProfile(home, [&](auto error) { result = error.value_or("done"); });
    EXPECT_EQ(count(), 0);
    waitUntil([&] { return result.has_value(); }, "removal");
    EXPECT_EQ(result, "done");
}

TEST_F(PopupJourneyTest, ThePageBehindACrashComesBack)
{
    click(mail(), "#open-popup");
    auto& popup = waitForPopup(1, "mail.google.com");
    evaluate(popup, "void (window.before = true)");
    test::killWebProcesses();
    waitUntil([&] { return evaluate(popup, "document.title + window.before") == "Popup of mail.google.comundefined"; },
        "page");
}

TEST_F(PopupJourneyTest, TheUserSaysWhereALinkOpens)
{
    for (auto const* const link : { "#link-calendar", "#link-calendar-blank" }) {
        SCOPED_TRACE(link);
        click(mail(), link);
        answer("Escape");
        EXPECT_THAT(workspace.opened, IsEmpty());
    }
    click(mail(), "#link-calendar");
    answer("alt+d");
    waitUntil([&] { return !workspace.opened.empty(); }, "browser");
    EXPECT_THAT(workspace.opened, ElementsAre("https://calendar.google.com/calendar/u/0/r"));
    EXPECT_THAT(popups, IsEmpty());

    click(mail(), "#link-calendar");
    answer("Return");
    auto& popup = waitForPopup(1, "calendar.google.com");
    EXPECT_EQ(evaluate(popup, "document.documentElement.dataset.account"), "ada") << "signed in as its profile is";
    EXPECT_EQ(mail().url()->host(), "mail.google.com");
}

TEST_F(PopupJourneyTest, AnotherProgramIsStartedOnlyWhenTheUserAgrees)
{
    click(mail(), "#link-meeting");
    answer("Return");
    EXPECT_THAT(workspace.opened, IsEmpty()) << "Return is the safe answer";
    click(mail(), "#link-meeting-blank");
    answer("alt+o");
    waitUntil([&] { return !workspace.opened.empty(); }, "program");
    EXPECT_THAT(workspace.opened, ElementsAre("meeting://join/42"));
}

TEST_F(PopupJourneyTest, AClickOnANotificationLeadsToThePopup)
{
    test::FakeNotificationDaemon const daemon;
    click(mail(), "#open-popup");
    auto& popup = waitForPopup(1, "mail.google.com");
    waitUntil([&] { return evaluate(popup, "Notification.requestPermission()") == "granted"; }, "permission");
    // Both have a first notification.
    for (auto* const page : { &mail(), &popup }) {
        evaluate(*page, "void (new Notification(opener ? 'popup' : 'mail').onclick = () => { window.clicked = true })");
    }
    waitUntil([&] { return daemon.notices.size() == 2; }, "notifications");
    window().present();
    waitUntil([&] { return window().is_active(); }, "main window in front");
    daemon.emitAction(daemon.notices[0].title == "popup" ? 1 : 2);
    waitUntil([&] { return windowOf(popup).is_active(); }, "popup in front");
    waitUntil([&] { return evaluate(popup, "window.clicked") == "true"; }, "the page's own click event");
    EXPECT_EQ(evaluate(mail(), "window.clicked"), "undefined");
}

}
}
