#include "Fakes/FakePanels.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

// The panels are the test's own, to see what is asked.
class PermissionTest : public test::WebTest {
protected:
    PermissionTest()
    {
        desktopPanels = &panelsOfTheTest;
        launch();
        open(GoogleApp::mail);
        webkit_settings_set_enable_mock_capture_devices(webkit_web_view_get_settings(mail().engineView()), TRUE);
    }
    ~PermissionTest() override { terminate(); }

    gtk::WebView& mail() { return view(GoogleApp::mail); }
    std::string state(std::string const& name)
    {
        return evaluate(
            mail(), "navigator.permissions.query({ name: '" + name + "' }).then(s => s.state, e => e.name)");
    }
    // The page's answer arrives in window.answer.
    void ask(std::string const& expression)
    {
        evaluate(mail(),
            "void (window.answer = '', " + expression
                + ".then(() => { answer = 'given' }, (error) => { answer = error.name }))");
    }
    void press(std::size_t button)
    {
        waitUntil([&] { return !panelsOfTheTest.alerts.empty(); }, "question");
        panelsOfTheTest.press(button);
    }
    void expectAnswer(std::string const& answer)
    {
        waitUntil([&] { return evaluate(mail(), "window.answer") != ""; }, "answer");
        EXPECT_EQ(evaluate(mail(), "window.answer"), answer);
    }

    test::FakePanels panelsOfTheTest;
};

TEST_F(PermissionTest, APageUsesTheCameraOnlyIfTheUserLetsIt)
{
    std::string const camera = "navigator.mediaDevices.getUserMedia({ video: true })";
    EXPECT_EQ(state("camera"), "prompt");
    ask(camera);
    waitUntil([&] { return !panelsOfTheTest.alerts.empty(); }, "question");
    EXPECT_EQ(panelsOfTheTest.alerts[0].panel.message, "Let mail.google.com use the camera?");
    press(1);
    expectAnswer("given");
    EXPECT_EQ(state("camera"), "granted");
    ask(camera);
    expectAnswer("given");
    EXPECT_TRUE(panelsOfTheTest.alerts.empty());

    ask("navigator.mediaDevices.getUserMedia({ audio: true, video: true })");
    press(0);
    expectAnswer("NotAllowedError");
    EXPECT_EQ(state("microphone"), "denied");

    ask("new Promise((done, failed) => navigator.geolocation.getCurrentPosition(done, "
        "(error) => failed({ name: 'code ' + error.code })))");
    waitUntil([&] { return !panelsOfTheTest.alerts.empty(); }, "question");
    EXPECT_EQ(panelsOfTheTest.alerts[0].panel.message, "Let mail.google.com know where you are?");
    press(0);
    expectAnswer("code 1");
    EXPECT_EQ(state("geolocation"), "denied");
}

}
}
