#include "App/MainMenu.h"

#include "App/AppDelegate.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeNotificationCenter.h"
#include "Fakes/FakeWebEngine.h"
#include "Fakes/ManualRunLoop.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <set>
#include <tuple>

namespace tarn {
namespace {

using platform::MenuItem;

std::vector<MenuItem> items()
{
    std::vector<MenuItem> result;
    for (auto const& menu : MainMenu::build()) {
        for (auto const& entry : menu.entries) {
            if (auto const* const item = std::get_if<MenuItem>(&entry))
                result.push_back(*item);
        }
    }
    return result;
}

TEST(MainMenu, NoTwoItemsShareAKey)
{
    std::set<std::tuple<char32_t, bool, bool>> keys;
    for (auto const& item : items()) {
        if (item.key) {
            EXPECT_TRUE(keys.emplace(item.key->character, item.key->control, item.key->option).second) << item.title;
        }
    }
}

TEST(MainMenu, AppsHaveTheirNumberAsKeyAndTheirPositionAsTag)
{
    int position = 0;
    for (auto const& item : items()) {
        if (std::get<platform::Command>(item.action) != platform::Command::showApp)
            continue;
        auto const app = GoogleApp::allCases[static_cast<std::size_t>(position)];
        EXPECT_EQ(item.title, app.title());
        EXPECT_EQ(item.tag, position++);
        EXPECT_EQ(item.key->character, U'0' + static_cast<char32_t>(position));
    }
    EXPECT_EQ(position, 7);
}

TEST(AppDelegate, LaunchesShowsAgainAndEnds)
{
    TemporaryFolder folder;
    test::ManualRunLoop runLoop;
    test::FakeWebEngine engine;
    test::FakeWindowFactory windows;
    test::FakeWorkspace workspace;
    test::FakeDockTile dockTile;
    test::FakeUserDefaults defaults;
    test::FakeActivation activation;
    test::FakeNotificationCenter notificationCenter;
    notificationCenter.status = platform::AuthorizationStatus::notDetermined;
    AppDelegate delegate({
        .applicationSupport = folder.path(),
        .store = { .now = [] { return Timestamp {}; }, .makeUuid = &Uuid::random, .log = [](std::string const&) {} },
        .engine = engine,
        .windows = windows,
        .workspace = workspace,
        .dockTile = dockTile,
        .defaults = defaults,
        .runLoop = runLoop,
        .activation = activation,
        .notificationCenter = &notificationCenter,
        .log = [](std::string const&) {},
    });
    delegate.applicationWillFinishLaunching();
    EXPECT_NE(notificationCenter.delegate, nullptr) << "clicks have a receiver before anything is launched";
    EXPECT_TRUE(notificationCenter.questions.empty());
    delegate.applicationShouldHandleReopen();
    EXPECT_EQ(windows.main.presented, 0) << "too early: there is no window yet";

    delegate.applicationDidFinishLaunching();
    notificationCenter.answerQuestions();
    EXPECT_EQ(notificationCenter.requests, 1);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "Tarn" / "v2" / "profiles.json"));
    EXPECT_EQ(windows.main.presented, 1);

    windows.main.visible = false;
    delegate.applicationShouldHandleReopen();
    EXPECT_TRUE(windows.main.visible);

    windows.main.onFrameChange({ 800, 600, false });
    auto const store = engine.storeOfView.front();
    delegate.applicationWillTerminate();
    EXPECT_EQ(windows.main.content, nullptr);
    EXPECT_TRUE(engine.stores[store].expired());
    EXPECT_EQ(defaults.values["TarnMainWindow"], "800x600");
    delegate.applicationShouldHandleReopen();
}

}
}
