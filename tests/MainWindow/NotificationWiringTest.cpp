#include "App/AppDelegate.h"
#include "Bridge/BridgeScripts.h"
#include "Fakes/FakeSurroundings.h"
#include "MainWindow/PrintBridge.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Document final : public platform::ScriptDocument {
public:
    void call(std::string const& function, std::string const& argument) override
    {
        calls.push_back(function + " " + argument);
    }

    std::vector<std::string> calls;
};

class NotificationWiringTest : public testing::Test, protected test::FakeSurroundings {
protected:
    NotificationWiringTest()
    {
        delegate.applicationWillFinishLaunching();
        delegate.applicationDidFinishLaunching();
    }

    test::FakeWebView& view(GoogleApp app)
    {
        return static_cast<test::FakeWebView&>(delegate.mainWindow().pool().view(app));
    }

    test::FakeNotificationCenter& center { notificationCenter };
    std::shared_ptr<Document> document { std::make_shared<Document>() };
    AppDelegate delegate { appEnvironment() };
};

TEST_F(NotificationWiringTest, EveryViewGetsTheScriptsBeforeAnyOther)
{
    view(GoogleApp::keep);
    ASSERT_EQ(engine.configurations.size(), 2);
    for (auto const& configuration : engine.configurations) {
        std::vector<std::string> sources;
        for (auto const& script : configuration.userContentController.userScripts)
            sources.push_back(script.source);
        EXPECT_THAT(sources,
            ElementsAre(BridgeScripts::notificationRoads(), BridgeScripts::notifications("default"),
                PrintBridge::script(), BridgeScripts::promoDismissal()));
        EXPECT_EQ(configuration.userContentController.messageHandlers.size(), 4);
    }
}

TEST_F(NotificationWiringTest, EveryLoadedPageHearsThePermission)
{
    auto const script = HasSubstr("__tarnSetNotificationPermission(\"granted\")");
    auto& mail = view(GoogleApp::mail);
    mail.commit("https://mail.google.com/");
    center.answerQuestions();
    EXPECT_THAT(mail.events, Not(Contains(script)));
    mail.finish();
    center.answerQuestions();
    EXPECT_THAT(mail.events, Contains(script).Times(1));
    EXPECT_THAT(view(GoogleApp::drive).events, Not(Contains(script)));
}

TEST_F(NotificationWiringTest, AClickShowsItsAppUnlessTheProfileIsLeft)
{
    auto& mail = view(GoogleApp::mail);
    engine.configurations[0].userContentController.messageHandlers[0].handler->didReceive({ mail, document,
        platform::FrameKind::main, "https://mail.google.com", R"({"type":"show","id":"1","title":"Mira"})" });
    ASSERT_EQ(center.shown.size(), 1);
    delegate.mainWindow().show(GoogleApp::drive);
    windows.main.visible = false;
    center.click(center.shown[0]);
    EXPECT_EQ(windows.main.content, &mail);
    EXPECT_TRUE(windows.main.visible);
    EXPECT_THAT(document->calls, ElementsAre("__tarnNotificationClicked 1"));

    delegate.profiles().setActive(delegate.profiles().create("Work", { GoogleApp::keep }).id);
    auto const presented = windows.main.presented;
    center.click(center.shown[0]);
    EXPECT_EQ(activation.activations, 2);
    EXPECT_EQ(windows.main.presented, presented);
    EXPECT_EQ(document->calls.size(), 1);

    delegate.applicationWillTerminate();
    center.click(center.shown[0]);
}

}
}
