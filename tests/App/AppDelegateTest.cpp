#include "App/AppDelegate.h"

#include "Fakes/FakeSurroundings.h"

#include <gmock/gmock.h>

#include <fstream>

namespace tarn {
namespace {

class AppDelegateTest : public testing::Test, protected test::FakeSurroundings {
protected:
    AppEnvironment environment { appEnvironment() };
    std::unique_ptr<AppDelegate> delegate { std::make_unique<AppDelegate>(environment) };
};

TEST_F(AppDelegateTest, LaunchesShowsAgainAndEnds)
{
    notificationCenter.status = platform::AuthorizationStatus::notDetermined;
    delegate->applicationWillFinishLaunching();
    EXPECT_NE(notificationCenter.delegate, nullptr) << "clicks have a receiver before anything is launched";
    EXPECT_TRUE(notificationCenter.questions.empty());
    delegate->applicationShouldHandleReopen();
    EXPECT_EQ(windows.main.presented, 0) << "too early: there is no window yet";

    delegate->applicationDidFinishLaunching();
    notificationCenter.answerQuestions();
    EXPECT_EQ(notificationCenter.requests, 1);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "Tarn" / "v2" / "profiles.json"));
    EXPECT_EQ(windows.main.presented, 1);

    windows.main.visible = false;
    delegate->applicationShouldHandleReopen();
    EXPECT_TRUE(windows.main.visible);

    windows.main.onFrameChange({ 800, 600, false });
    auto const store = engine.storeOfView.front();
    delegate->applicationWillTerminate();
    EXPECT_EQ(windows.main.content, nullptr);
    EXPECT_TRUE(engine.stores[store].expired());
    EXPECT_EQ(defaults.values["TarnMainWindow"], "800x600");
    delegate->applicationShouldHandleReopen();
}

TEST_F(AppDelegateTest, StartsHiddenInAProfileAndIsShownByALaterStart)
{
    delegate->handle({ .window = LaunchRequest::Window::leaveHidden });
    auto const second = delegate->profiles().create("At work", { GoogleApp::mail });
    EXPECT_EQ(windows.main.presented, 0);
    delegate->handle({ .window = LaunchRequest::Window::leaveHidden, .profile = "At work" });
    EXPECT_EQ(delegate->profiles().activeID(), second.id);
    delegate->handle({ .profile = "nobody", .urls = { "https://a.example/", "no url" } });
    EXPECT_EQ(delegate->profiles().activeID(), second.id);
    EXPECT_EQ(windows.main.presented, 0) << "a link brings a window of its own";
    delegate->handle({});
    EXPECT_EQ(windows.main.presented, 1);

    environment.hostsTests = true;
    delegate = std::make_unique<AppDelegate>(environment);
    auto const views = engine.storeOfView.size();
    delegate->applicationWillFinishLaunching();
    delegate->applicationDidFinishLaunching();
    delegate->application({ *Url::parse("mailto:a@b") });
    EXPECT_EQ(engine.storeOfView.size(), views) << "under automated tests there is a menu and nothing else";
}

TEST_F(AppDelegateTest, EachMailtoLinkOpensAComposeWindowAlsoWhenItComesTooEarly)
{
    auto const shown = [&] {
        std::vector<std::string> urls;
        for (auto const& popup : windows.popups)
            urls.push_back(popup->content->url()->string());
        return urls;
    };
    std::string const compose = "https://mail.google.com/mail/?view=cm&fs=1";
    delegate->handle({ .urls = { "mailto:a@b?subject=x%20y", "http://a.example/", "MAILTO:c@d" } });
    EXPECT_EQ(windows.main.presented, 1);
    EXPECT_THAT(shown(), testing::ElementsAre(compose + "&to=a@b&su=x%20y", compose + "&to=c@d"));
    EXPECT_EQ(engine.storeOfView.back(), delegate->profiles().activeID());

    windows.main.visible = false;
    delegate->handle({ .urls = { "mailto:" } });
    delegate->handle({ .newItem = "sheet" });
    EXPECT_THAT(
        shown(), testing::ElementsAre(testing::_, testing::_, compose, "https://docs.google.com/spreadsheets/create"));
    EXPECT_FALSE(windows.main.visible);
}

TEST_F(AppDelegateTest, AfterSleepOnlyWhatFailedOrWasSignedOutLoadsAgain)
{
    delegate->applicationDidFinishLaunching();
    for (auto const app : { GoogleApp::keep, GoogleApp::drive, GoogleApp::calendar, GoogleApp::mail })
        delegate->mainWindow().show(app);
    auto const [mail, keep, drive, calendar]
        = std::tie(engine.views[0], engine.views[1], engine.views[2], engine.views[3]);
    auto const signIn = "https://accounts.google.com/ServiceLogin";
    mail->visit(signIn);
    keep->visit(signIn);
    drive->visit("https://drive.google.com/");
    calendar->navigationDelegate->didFail(*calendar, { .url = "https://calendar.google.com/x" });
    for (auto* const view : engine.views)
        view->events.clear();

    powerMonitor.onResume();
    runLoop.advance(FailedLoads::settlingTime);
    EXPECT_THAT(calendar->events, testing::ElementsAre("load https://calendar.google.com/x"));
    EXPECT_THAT(keep->events, testing::ElementsAre("load https://keep.google.com/"));
    EXPECT_THAT(drive->events, testing::IsEmpty());
    EXPECT_THAT(mail->events, testing::IsEmpty()) << "the user may be typing a password there";
}

TEST_F(AppDelegateTest, WakesNobodyWhileItHasNothingToDo)
{
    delegate->applicationDidFinishLaunching();
    for (auto const app : GoogleApp::allCases)
        delegate->mainWindow().show(app);
    for (auto* const view : engine.views)
        view->arrive();
    windows.main.onFrameChange({ 800, 600, false });
    windows.main.visible = false;
    // Without a network, with a page that failed for it, and after a profile was deleted.
    networkMonitor.change(false);
    engine.views[1]->navigationDelegate->didFail(*engine.views[1], { .url = "https://calendar.google.com/" });
    auto const second = delegate->profiles().create("Second", { GoogleApp::mail });
    delegate->mainWindow().deleteProfile(second.id, [](auto const&) {});
    runLoop.advance(std::chrono::minutes(5));
    auto const before = runLoop.calls;
    EXPECT_GT(before, 0);
    runLoop.advance(std::chrono::hours(12));
    EXPECT_EQ(runLoop.calls, before);
}

TEST_F(AppDelegateTest, LooksForANewerReleaseOnceADayAndSaysNothingElse)
{
    class FakeUpdater final : public platform::Updater {
    public:
        void fetch(Url const&, std::size_t, std::function<void(double)>, Reply<platform::FetchResult> reply) override
        {
            ++fetches;
            std::move(reply)(feed.empty() ? platform::FetchResult { .problem = "no network" }
                                          : platform::FetchResult { .content = feed });
        }
        void cancelFetch() override { }
        std::unique_ptr<platform::ProgressPanel> showProgress(std::string const&, std::function<void()>) override
        {
            ADD_FAILURE() << "nobody asked";
            return nullptr;
        }
        void keep(std::string, Reply<std::optional<platform::PackageFile>>) override { }
        void install(platform::PackageFile const&, Reply<std::optional<std::string>>) override { }

        int fetches { 0 };
        std::string feed;
    } updater;
    auto const feed = [](std::string const& version) {
        return "<rss xmlns:sparkle='s'><channel><item><enclosure url='https://u.example/t.deb' length='7' "
               "sparkle:edSignature='c2ln' sparkle:version='"
            + version + "'/></item></channel></rss>";
    };
    Timestamp now = *fromIso8601("2026-11-21T12:00:00Z");
    environment.store.now = [&] { return now; };
    environment.updater = &updater;
    environment.update = { .feedURL = "https://u.example/feed", .publicEDKey = "key", .currentVersion = "2.0" };
    auto const pass = [&](std::chrono::hours hours) {
        now += hours;
        runLoop.advance(hours);
    };
    auto const restart = [&] {
        delegate = std::make_unique<AppDelegate>(environment);
        delegate->applicationDidFinishLaunching();
        pass(std::chrono::hours(0));
    };
    defaults.values["LastUpdateCheck"] = "2099-01-01T00:00:00Z";
    restart();
    EXPECT_EQ(updater.fetches, 1) << "a clock was wrong";
    pass(std::chrono::hours(20));
    restart();
    pass(std::chrono::hours(3));
    EXPECT_EQ(updater.fetches, 1);
    updater.feed = feed("2.0");
    pass(std::chrono::hours(1));
    EXPECT_EQ(updater.fetches, 2);
    EXPECT_TRUE(panels.alerts.empty()) << "neither that it failed nor that all is new";
    updater.feed = feed("2.1");
    pass(std::chrono::hours(24));
    ASSERT_EQ(panels.alerts.size(), 1U);
    EXPECT_EQ(panels.alerts.front().panel.message, "A new version of Tarn is available");

    environment.update.updatedBy = "Flatpak";
    restart();
    pass(std::chrono::hours(24));
    EXPECT_EQ(updater.fetches, 3) << "somebody else's business";
}

TEST_F(AppDelegateTest, BecomesTheDefaultEmailAppOrSaysWhyNot)
{
    DefaultEmailApp app(workspace, panels);
    auto const enabled = [&] { return app.validate(platform::Command::setDefaultEmailApp, 0)->enabled; };
    int changes = 0;
    app.onChange = [&] { ++changes; };
    workspace.handlerError = "The disk is full";
    EXPECT_TRUE(app.perform(platform::Command::setDefaultEmailApp, 0));
    ASSERT_EQ(panels.alerts.size(), 1U);
    EXPECT_EQ(panels.alerts.front().panel.message, "Tarn could not become the default email app");
    EXPECT_EQ(panels.alerts.front().panel.informativeText, "The disk is full");
    EXPECT_TRUE(enabled());

    workspace.handlerError.reset();
    app.setDefaultEmailApp();
    EXPECT_EQ(panels.alerts.size(), 1U) << "success shows nothing";
    EXPECT_FALSE(enabled());
    EXPECT_EQ(changes, 2);
}

TEST_F(AppDelegateTest, ProfilesOfOneXAreThereAtTheFirstStartOnly)
{
    auto const names = [&] {
        std::vector<std::string> result;
        for (auto const& profile : delegate->profiles().profiles())
            result.push_back(profile.name);
        return result;
    };
    std::filesystem::create_directory(folder / "Tarn");
    std::ofstream(folder / "Tarn/profiles.json")
        << R"({"activeProfileId": "b", "profiles": [{"id": "a", "name": "Home"}, {"id": "b", "name": "Work"}]})";
    delegate->applicationDidFinishLaunching();
    EXPECT_THAT(names(), testing::ElementsAre("Home", "Work"));
    auto const work = delegate->profiles().active();
    EXPECT_EQ(work.name, "Work");
    EXPECT_EQ(engine.storeOfView.back(), work.id) << "the window opens on it";

    delegate->profiles().remove(work.id);
    delegate->applicationWillTerminate();
    delegate = std::make_unique<AppDelegate>(environment);
    delegate->applicationDidFinishLaunching();
    EXPECT_THAT(names(), testing::ElementsAre("Home"));
}

TEST_F(AppDelegateTest, SettingsAreOneWindowThatOpensWhereItIsAskedFor)
{
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(windows.settingsMade, 0);
    auto& settings = delegate->settingsController();
    settings.model().setTab(SettingsModel::Tab::notifications);
    EXPECT_TRUE(delegate->perform(platform::Command::openSettings, 0));
    EXPECT_EQ(settings.model().tab(), SettingsModel::Tab::notifications) << "the tab selected last";
    delegate->mainWindow().sidebar().clickSettings();
    EXPECT_EQ(settings.model().tab(), SettingsModel::Tab::notifications);

    delegate->mainWindow().sidebar().clickProfile();
    auto const manage = std::get<platform::MenuItem>(delegate->mainWindow().sidebar().profileMenu()->entries.back());
    EXPECT_EQ(manage.title, "Manage Profiles…");
    std::get<std::function<void()>>(manage.action)();
    EXPECT_EQ(settings.model().tab(), SettingsModel::Tab::profiles);
    EXPECT_EQ(windows.settings.presented, 3);
    EXPECT_EQ(windows.settingsMade, 1);

    for (auto const tab : SettingsModel::allTabs)
        EXPECT_EQ(SettingsModel::fromRawValue(SettingsModel::rawValue(tab)), tab);
    EXPECT_EQ(SettingsModel::fromRawValue("Profiles"), std::nullopt);
}

TEST_F(AppDelegateTest, NewItemsOpenWhatTheyCarryInAWindowOfTheProfile)
{
    EXPECT_FALSE(delegate->validate(platform::Command::newItem, 6)->enabled) << "no window to be of";
    delegate->applicationDidFinishLaunching();
    EXPECT_TRUE(delegate->validate(platform::Command::newItem, 6)->enabled);
    delegate->perform(platform::Command::newItem, 100);
    EXPECT_EQ(engine.views.size(), 1);
    delegate->perform(platform::Command::newItem, 6);
    ASSERT_EQ(engine.views.size(), 2);
    EXPECT_THAT(engine.views[1]->events, testing::ElementsAre("load https://docs.google.com/spreadsheets/create"));
    EXPECT_EQ(engine.storeOfView[1], delegate->profiles().activeID());
}

}
}
