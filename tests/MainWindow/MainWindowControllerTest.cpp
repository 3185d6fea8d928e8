#include "MainWindow/MainWindowController.h"

#include "App/MainMenu.h"
#include "Fakes/FakeSurroundings.h"
#include "MainWindow/ProfileMenu.h"
#include "Profiles/DataStoreRemoval.h"
#include "Profiles/Zoom.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using platform::Command;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

std::vector<GoogleApp> const allApps(GoogleApp::allCases.begin(), GoogleApp::allCases.end());

class MainWindowControllerTest : public testing::Test, protected test::FakeSurroundings {
protected:
    MainWindowControllerTest() { menuBar.setReceivers({ &controller }); }
    ~MainWindowControllerTest() override { menuBar.setReceivers({}); }

    test::FakeWebView& view(GoogleApp app) { return static_cast<test::FakeWebView&>(controller.pool().view(app)); }
    Uuid activeID() const { return profiles.activeID(); }
    platform::Menu const& profilesMenu() const
    {
        return *std::ranges::find(menuBar.menus(), ProfileMenu::title, &platform::Menu::title);
    }
    platform::CommandState state(Command command, int tag = 0) const { return *controller.validate(command, tag); }

    platform::MenuBar menuBar { MainMenu::build() };
    ProfileStore profiles { folder.path(), storeEnvironment() };
    MainWindowController controller { profiles, windowEnvironment(menuBar) };
};

TEST_F(MainWindowControllerTest, OpensOnMailWithOneView)
{
    EXPECT_EQ(windows.main.appearance.frame, (platform::WindowFrame { 1300, 900, false }));
    EXPECT_EQ(windows.main.appearance.minimumWidth, 700);
    EXPECT_EQ(windows.main.appearance.minimumHeight, 500);
    EXPECT_FALSE(windows.main.visible) << "it is the owner that shows it";

    ASSERT_EQ(engine.views.size(), 1);
    EXPECT_EQ(windows.main.content, engine.views[0]);
    EXPECT_EQ(windows.main.focused, engine.views[0]);
    EXPECT_THAT(engine.views[0]->events, ElementsAre("load https://mail.google.com/"));
    EXPECT_EQ(engine.views[0]->timeout, 60s);
    auto const& configuration = engine.configurations[0];
    EXPECT_TRUE(configuration.javaScriptCanOpenWindowsAutomatically);
    EXPECT_TRUE(configuration.elementFullscreenEnabled);
    EXPECT_TRUE(configuration.allowsBackForwardNavigationGestures);
    auto const& scripts = configuration.userContentController.userScripts;
    ASSERT_EQ(scripts.size(), 2);
    EXPECT_EQ(scripts[0].frames, platform::InjectedFrames::mainFrameOnly) << "frames keep their own print()";
    EXPECT_EQ(scripts[1].injectionTime, platform::InjectionTime::documentEnd);
}

TEST_F(MainWindowControllerTest, SwitchingAppsKeepsTheirViews)
{
    menuBar.perform(Command::showApp, 2);
    auto* const drive = &view(GoogleApp::drive);
    EXPECT_EQ(windows.main.content, drive);
    EXPECT_EQ(windows.main.focused, drive);
    EXPECT_TRUE(state(Command::showApp, 2).checked);
    EXPECT_FALSE(state(Command::showApp, 0).checked);

    controller.sidebar().clickApp("mail");
    controller.sidebar().clickApp("drive");
    EXPECT_EQ(windows.main.content, drive);
    EXPECT_THAT(drive->events, ElementsAre("load https://drive.google.com/"));
    EXPECT_EQ(engine.views.size(), 2);

    for (int const tag : { -1, 7, 100 })
        menuBar.perform(Command::showApp, tag);
    EXPECT_EQ(windows.main.content, drive);
}

TEST_F(MainWindowControllerTest, AnAppThatTheProfileDoesNotUseIsNotOffered)
{
    auto profile = profiles.active();
    profile.enabledApps = { GoogleApp::tasks, GoogleApp::drive };
    profiles.update(profile);

    EXPECT_EQ(controller.current(), GoogleApp::drive) << "the first that is left, in catalogue order";
    EXPECT_TRUE(state(Command::showApp, 0).hidden);
    EXPECT_FALSE(state(Command::showApp, 0).enabled);
    EXPECT_FALSE(state(Command::showApp, 2).hidden);
    controller.show(GoogleApp::mail);
    controller.openGmailNotificationSettings();
    EXPECT_EQ(controller.current(), GoogleApp::drive);
    EXPECT_FALSE(controller.sidebar().appButtons()[0].isVisible);
}

TEST_F(MainWindowControllerTest, ARenamedProfileKeepsItsViews)
{
    auto profile = profiles.active();
    profile.name = "Home";
    profiles.update(profile);
    EXPECT_EQ(engine.views.size(), 1);
    EXPECT_EQ(controller.sidebar().profileButton().tooltip, "Home: switch profile");
    EXPECT_EQ(std::get<platform::MenuItem>(profilesMenu().entries[0]).title, "Home");
}

TEST_F(MainWindowControllerTest, SwitchingProfileBuildsANewPoolOnItsOwnStore)
{
    auto const home = activeID();
    view(GoogleApp::mail).setTitle("Inbox (3)");
    auto const work = profiles.create("Work", { GoogleApp::keep, GoogleApp::mail }).id;
    controller.show(GoogleApp::drive);

    profiles.setActive(work);
    EXPECT_TRUE(engine.stores[home].expired()) << "the old views are gone before the new ones come";
    EXPECT_EQ(engine.storeOfView.back(), work);
    EXPECT_EQ(controller.current(), GoogleApp::mail) << "Drive is not used here";
    EXPECT_EQ(dockTile.badge, std::nullopt);
    EXPECT_FALSE(controller.sidebar().appButtons()[0].showsDot);

    profiles.setActive(home);
    EXPECT_EQ(engine.storeOfView.back(), home);
    EXPECT_EQ(engine.storeOfView.size(), 4);
}

TEST_F(MainWindowControllerTest, TheMailTitleIsTheUnreadCount)
{
    auto& mail = view(GoogleApp::mail);
    mail.setTitle("Inbox (1,234) - someone@example.com - Mail");
    EXPECT_EQ(dockTile.badge, 1234);
    EXPECT_TRUE(controller.sidebar().appButtons()[0].showsDot);
    controller.show(GoogleApp::calendar);
    view(GoogleApp::calendar).setTitle("Week (9)");
    EXPECT_EQ(dockTile.badge, 1234);
    EXPECT_EQ(windows.main.title, "Tarn") << "the dock shows it";
    dockTile.shown = false;
    dockTile.onShownChange();
    EXPECT_EQ(windows.main.title, "(1234) Tarn");
    mail.setTitle("Inbox - someone@example.com - Mail");
    EXPECT_EQ(windows.main.title, "Tarn");
    EXPECT_EQ(dockTile.badge, std::nullopt);
    EXPECT_FALSE(controller.sidebar().appButtons()[0].showsDot);
}

TEST_F(MainWindowControllerTest, ASignInReloadsTheOtherAppsOnceInThirtySeconds)
{
    auto& mail = view(GoogleApp::mail);
    auto& drive = view(GoogleApp::drive);
    auto& keep = view(GoogleApp::keep);
    auto const signIn = [](test::FakeWebView& view, char const* home) {
        view.visit("https://accounts.google.com/ServiceLogin");
        view.visit("https://login.microsoftonline.com/saml");
        view.visit("https://accounts.google.com/CheckCookie");
        view.visit(home);
    };
    auto const reloads = [&] { return std::array { mail.events.size(), drive.events.size(), keep.events.size() }; };
    auto const before = reloads();

    signIn(mail, "https://mail.google.com/mail/");
    EXPECT_EQ(reloads(), (std::array { before[0], before[1] + 1, before[2] + 1 }));
    EXPECT_EQ(drive.events.back(), "load https://drive.google.com/");

    runLoop.advance(30s);
    signIn(drive, "https://drive.google.com/");
    EXPECT_EQ(reloads(), (std::array { before[0], before[1] + 1, before[2] + 1 })) << "not again so soon";

    runLoop.advance(1ms);
    signIn(drive, "https://drive.google.com/");
    EXPECT_EQ(reloads(), (std::array { before[0] + 1, before[1] + 1, before[2] + 2 }));
}

TEST_F(MainWindowControllerTest, OnlyASignInThatLandsOnAnAppCounts)
{
    auto& mail = view(GoogleApp::mail);
    auto& drive = view(GoogleApp::drive);
    auto const before = drive.events.size();

    mail.visit("https://mail.google.com/mail/");
    mail.visit("https://accounts.google.com/ServiceLogin");
    mail.visit("https://news.example/");
    mail.visit("https://mail.google.com/mail/");
    EXPECT_EQ(drive.events.size(), before) << "it left the sign-in";

    mail.visit("https://accounts.google.com/ServiceLogin");
    mail.visit("https://www.google.com/");
    mail.visit("https://myaccount.google.com/acs/x");
    EXPECT_EQ(drive.events.size(), before) << "still under way";

    // The mark of a view must not pass to a view of the next profile.
    mail.commit("https://accounts.google.com/ServiceLogin");
    profiles.setActive(profiles.create("Work", allApps).id);
    view(GoogleApp::drive);
    view(GoogleApp::mail).visit("https://mail.google.com/mail/");
    EXPECT_EQ(view(GoogleApp::drive).events.size(), 1);
}

TEST_F(MainWindowControllerTest, ZoomGoesInHalfStepsAndIsKept)
{
    auto& mail = view(GoogleApp::mail);
    menuBar.perform(Command::zoomIn, 0);
    EXPECT_NEAR(mail.zoom, std::pow(1.2, 0.5), 1e-9);
    EXPECT_DOUBLE_EQ(profiles.active().zoom.at(GoogleApp::mail), mail.zoom);
    for (int i = 0; i < 20; ++i)
        menuBar.perform(Command::zoomIn, 0);
    EXPECT_NEAR(mail.zoom, std::pow(1.2, 5), 1e-9);
    for (int i = 0; i < 40; ++i)
        menuBar.perform(Command::zoomOut, 0);
    EXPECT_NEAR(mail.zoom, std::pow(1.2, -3), 1e-9);
    EXPECT_EQ(engine.views.size(), 1) << "zooming rebuilds nothing";

    auto const home = activeID();
    auto const work = profiles.create("Work", allApps).id;
    profiles.setZoom(1.21, GoogleApp::mail, home);
    profiles.setActive(work);
    EXPECT_EQ(view(GoogleApp::mail).zoom, 1.0);
    profiles.setActive(home);
    EXPECT_NEAR(view(GoogleApp::mail).zoom, 1.2, 1e-9) << "snapped to the scale";

    menuBar.perform(Command::actualSize, 0);
    EXPECT_EQ(view(GoogleApp::mail).zoom, 1.0);
    EXPECT_THAT(profiles.active().zoom, IsEmpty());
}

TEST_F(MainWindowControllerTest, PageCommandsActOnTheShownApp)
{
    auto& mail = view(GoogleApp::mail);
    controller.show(GoogleApp::keep);
    auto& keep = view(GoogleApp::keep);
    keep.arrive();
    EXPECT_FALSE(state(Command::goBack).enabled);
    keep.load({ .url = *Url::parse("https://keep.google.com/archive") });
    keep.arrive();
    EXPECT_TRUE(state(Command::goBack).enabled);
    EXPECT_FALSE(state(Command::goForward).enabled);
    keep.events.clear();
    for (auto const command : { Command::goBack, Command::goForward, Command::reloadPage })
        menuBar.perform(command, 0);
    EXPECT_THAT(keep.events, ElementsAre("back", "forward", "reload"));
    EXPECT_EQ(mail.events.size(), 1);
    EXPECT_FALSE(menuBar.perform(Command::quit, 0));
}

TEST_F(MainWindowControllerTest, GmailSettingsOpenInPlaceOrByAddress)
{
    auto& mail = view(GoogleApp::mail);
    controller.show(GoogleApp::keep);
    controller.openGmailNotificationSettings();
    EXPECT_EQ(controller.current(), GoogleApp::mail);
    EXPECT_TRUE(windows.main.visible);
    EXPECT_EQ(mail.events.back(), "script location.hash = '#settings/general'");

    mail.commit("https://accounts.google.com/ServiceLogin");
    controller.openGmailNotificationSettings();
    EXPECT_EQ(mail.events.back(), "load https://mail.google.com/mail/u/0/#settings/general");
}

TEST_F(MainWindowControllerTest, TheProfileMenuSwitches)
{
    auto const home = activeID();
    auto const work = profiles.create("Work", allApps).id;
    controller.sidebar().clickProfile();
    auto const menu = *controller.sidebar().profileMenu();
    ASSERT_EQ(menu.entries.size(), 2) << "nothing to manage them with, nothing offered";
    auto const item = [&](std::size_t index) { return std::get<platform::MenuItem>(menu.entries[index]); };
    EXPECT_TRUE(item(0).checked);
    EXPECT_FALSE(item(1).checked);

    std::get<std::function<void()>>(item(1).action)();
    EXPECT_EQ(activeID(), work);
    EXPECT_TRUE(std::get<platform::MenuItem>(profilesMenu().entries[1]).checked);

    // A menu that stays open while its profile goes.
    profiles.remove(home);
    std::get<std::function<void()>>(item(0).action)();
    EXPECT_EQ(activeID(), work);

    bool managed = false;
    controller.setOnManageProfiles([&] { managed = true; });
    std::get<std::function<void()>>(std::get<platform::MenuItem>(profilesMenu().entries.back()).action)();
    EXPECT_TRUE(managed);
}

TEST_F(MainWindowControllerTest, DeletingAProfileRemovesItsData)
{
    auto const home = activeID();
    auto const work = profiles.create("Work", allApps).id;
    std::vector<std::optional<std::string>> answers;
    auto const answer = [&](std::optional<std::string> error) { answers.push_back(std::move(error)); };

    engine.removalFailures = 2;
    controller.deleteProfile(home, answer);
    EXPECT_EQ(activeID(), work);
    EXPECT_EQ(engine.storeOfView.back(), work);
    engine.answerRemovals();
    runLoop.advance(DataStoreRemoval::pause - 1ms);
    EXPECT_EQ(engine.removalAttempts, 1);
    runLoop.advance(1ms);
    engine.answerRemovals();
    runLoop.advance(DataStoreRemoval::pause);
    engine.answerRemovals();
    EXPECT_THAT(answers, ElementsAre(std::nullopt));
    EXPECT_THAT(engine.removed, ElementsAre(home));

    EXPECT_THROW(controller.deleteProfile(work, answer), ProfileStore::Failure);
    EXPECT_EQ(engine.removalAttempts, 3);
}

TEST_F(MainWindowControllerTest, DataThatCannotBeRemovedIsReportedAfterThreeAttempts)
{
    auto const work = profiles.create("Work", allApps).id;
    engine.removalFailures = 100;
    std::vector<std::optional<std::string>> answers;
    controller.deleteProfile(work, [&](std::optional<std::string> error) { answers.push_back(std::move(error)); });
    for (int i = 0; i < 10; ++i) {
        engine.answerRemovals();
        runLoop.advance(DataStoreRemoval::pause);
    }
    EXPECT_EQ(engine.removalAttempts, 3);
    EXPECT_THAT(answers, ElementsAre(std::optional<std::string>("in use")));
    EXPECT_EQ(profiles.profile(work), std::nullopt);
}

TEST_F(MainWindowControllerTest, TheFindBarServesThePageThatIsShown)
{
    menuBar.perform(Command::showFind, 0);
    controller.findBar().setText("lake");
    EXPECT_EQ(view(GoogleApp::mail).events.back(), "find lake");
    menuBar.perform(Command::findPrevious, 0);
    EXPECT_EQ(view(GoogleApp::mail).events.back(), "find backward lake");

    controller.show(GoogleApp::mail);
    EXPECT_TRUE(controller.findBar().isVisible());
    controller.show(GoogleApp::keep);
    EXPECT_FALSE(controller.findBar().isVisible());
    EXPECT_EQ(windows.main.focused, &view(GoogleApp::keep));
    menuBar.perform(Command::findNext, 0);
    EXPECT_EQ(view(GoogleApp::keep).events.back(), "find lake");
}

TEST_F(MainWindowControllerTest, MailPrintsTheOpenConversationOrExplainsWhyNot)
{
    auto& mail = view(GoogleApp::mail);
    auto const print = [&](std::optional<std::string> const& result) {
        menuBar.perform(Command::printPage, 0);
        mail.scriptCompletion(result);
    };
    print("true");
    EXPECT_THAT(panels.alerts, IsEmpty());
    for (auto const& result : std::vector<std::optional<std::string>> { "false", "1", "\"true\"", std::nullopt }) {
        print(result);
        ASSERT_EQ(panels.alerts.size(), 1);
        EXPECT_EQ(panels.alerts.back().panel.message, "Open an email to print it.");
        panels.press(0);
    }
    EXPECT_NE(mail.events.back(), "print");
    print("false");
    panels.press(1);
    EXPECT_EQ(mail.events.back(), "print") << "Print This Page";

    controller.show(GoogleApp::keep);
    menuBar.perform(Command::printPage, 0);
    EXPECT_EQ(view(GoogleApp::keep).events.back(), "print");
}

TEST_F(MainWindowControllerTest, PagesPrintThroughTheApplication)
{
    auto const& content = engine.configurations[0].userContentController;
    auto const handler = std::ranges::find(content.messageHandlers, "tarnPrint", &platform::NamedMessageHandler::name);
    ASSERT_NE(handler, content.messageHandlers.end());
    auto& mail = view(GoogleApp::mail);
    handler->handler->didReceive({ .webView = mail, .document = nullptr, .origin = "", .body = "{}" });
    EXPECT_EQ(mail.events.back(), "print");
}

TEST_F(MainWindowControllerTest, TheFrameIsSavedWhenTheApplicationEnds)
{
    windows.main.onFrameChange({ 900, 700, true });
    controller.prepareToTerminate();
    EXPECT_EQ(defaults.values["TarnMainWindow"], "900x700 maximized");
}

}
}
