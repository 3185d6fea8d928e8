#include "Web/WebTest.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

class FindTest : public test::WebTest {
protected:
    FindTest()
    {
        launch();
        open(GoogleApp::keep);
        waitUntil([&] { return window().is_active(); }, "active window");
        evaluate(keep(),
            "document.body.innerHTML = '<textarea></textarea><p id=a>tarn</p><p id=b>tarp</p><p id=c>tart</p>'");
    }

    gtk::WebView& keep() { return view(GoogleApp::keep); }
    FindBarController& bar() { return controller().findBar(); }
    void waitForMatch(std::string const& paragraph, std::string const& text)
    {
        waitUntil(
            [&] {
                return evaluate(keep(), "getSelection().anchorNode?.parentElement?.id + ' ' + getSelection()")
                    == paragraph + " " + text;
            },
            "match of " + text + " in " + paragraph);
    }
};

TEST_F(FindTest, TypingWalkingAndGoingBackToThePage)
{
    evaluate(keep(), "document.querySelector('textarea').focus()");
    press("ctrl+f");
    waitUntil([&] { return bar().isVisible(); }, "bar");
    type("tar");
    waitForMatch("a", "tar");
    press("Return");
    waitForMatch("b", "tar");
    press("ctrl+g");
    waitForMatch("c", "tar");
    press("Return");
    waitForMatch("a", "tar");
    press("shift+Return");
    waitForMatch("c", "tar");
    press("ctrl+shift+g");
    waitForMatch("b", "tar");
    type("p");
    waitForMatch("b", "tarp");
    type("x");
    waitUntil([&] { return bar().status() == "Not found"; }, "Not found");
    press("BackSpace");
    waitUntil([&] { return bar().status().empty(); }, "found again");

    press("Escape");
    waitUntil([&] { return !bar().isVisible(); }, "hidden bar");
    EXPECT_EQ(GTK_WIDGET(keep().engineView()), gtk_window_get_focus(GTK_WINDOW(window().gobj())));
    press("ctrl+f");
    waitUntil([&] { return bar().isVisible(); }, "bar");
    type("tarn");
    waitForMatch("a", "tarn");
    EXPECT_EQ(bar().text(), "tarn") << "what was there is selected, and replaced";
}

TEST_F(FindTest, TheEndOfThePageDoesNotHoldUpTheBar)
{
    press("ctrl+f");
    waitUntil([&] { return bar().isVisible(); }, "bar");
    type("tar");
    waitForMatch("a", "tar");
    test::killWebProcesses();
    press("Return");
    waitUntil(
        [&] {
            return evaluate(keep(),
                       "!document.querySelector('#c') && document.querySelector('textarea') && document.readyState")
                == "complete";
        },
        "page as it came");
    evaluate(keep(), "document.body.innerHTML = '<p id=a>tarn</p>'");
    press("ctrl+f");
    type("tarn");
    waitForMatch("a", "tarn");
    press("ctrl+1");
    waitUntil([&] { return controller().current() == GoogleApp::mail; }, "mail");
    EXPECT_FALSE(bar().isVisible());
}

}
}
