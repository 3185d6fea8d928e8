#include "App/AppDelegate.h"
#include "Fakes/FakeSurroundings.h"

#include <gmock/gmock.h>

#include <limits>

namespace tarn {
namespace {

using Remark = SafeRendering::Remark;

TEST(SafeRendering, IsPlannedFromWhatIsKnownBeforeTheStart)
{
    struct Row {
        SafeRendering::Facts facts;
        Rendering rendering;
        Remark remark;
    };
    constexpr auto most = std::numeric_limits<std::size_t>::max();
    Row const rows[] {
        { {}, Rendering::detected, Remark::none },
        { { .blankStarts = 1 }, Rendering::detected, Remark::offer },
        { { .blankStarts = 2 }, Rendering::safe, Remark::begun },
        { { .blankStarts = most }, Rendering::safe, Remark::begun },
        { { .isAskedFor = true, .blankStarts = 1 }, Rendering::safe, Remark::none },
        { { .isKept = true, .blankStarts = most }, Rendering::safe, Remark::none },
    };
    for (auto const& row : rows) {
        EXPECT_TRUE(SafeRendering::plan(row.facts) == (SafeRendering::Plan { row.rendering, row.remark }))
            << row.facts.isAskedFor << row.facts.isKept << row.facts.blankStarts;
    }
}

class SafeRenderingTest : public testing::Test, protected test::FakeSurroundings {
protected:
    // The program as far as it goes before anything is shown.
    AppDelegate& start(LaunchRequest const& request = {})
    {
        delegate.reset();
        panels.alerts.clear();
        auto environment = appEnvironment();
        environment.start = {
            .plan = SafeRendering::plan({
                .isAskedFor = request.rendering == Rendering::safe,
                .isKept = SafeRendering::isKept(defaults),
                .blankStarts = blankStarts.count(),
            }),
            .blankStarts = blankStarts,
            .restart = [this] { ++restarts; },
        };
        blankStarts.begin();
        delegate = std::make_unique<AppDelegate>(environment);
        delegate->handle(request);
        return *delegate;
    }
    std::vector<std::string> said()
    {
        std::vector<std::string> messages;
        for (auto const& alert : panels.alerts)
            messages.push_back(alert.panel.message);
        return messages;
    }

    BlankStarts const blankStarts { folder / "cache" / "blank-starts" };
    std::unique_ptr<AppDelegate> delegate;
    int restarts { 0 };
};

TEST_F(SafeRenderingTest, IsOfferedAfterOneBlankStartAndBegunAfterTwo)
{
    start({ .window = LaunchRequest::Window::leaveHidden });
    EXPECT_EQ(blankStarts.count(), 1);
    start({ .window = LaunchRequest::Window::leaveHidden }).applicationShouldHandleReopen();
    EXPECT_THAT(said(), testing::ElementsAre("The last start showed no page")) << "once there is a window to say it on";
    delegate->applicationShouldHandleReopen();
    EXPECT_EQ(panels.alerts.size(), 1);
    panels.press(1);
    EXPECT_EQ(restarts, 0);

    start();
    EXPECT_THAT(said(), testing::ElementsAre("Safe rendering is on"));
    auto* const page = engine.views.back();
    page->navigationDelegate->didFinish(*page);
    panels.press(1);
    EXPECT_EQ(blankStarts.count(), 0);
    start().applicationWillTerminate();
    EXPECT_THAT(said(), testing::IsEmpty()) << "only that time";
    EXPECT_EQ(blankStarts.count(), 0) << "it ended as it should";

    for (int starts = 0; starts < 3; ++starts)
        start();
    panels.press(0);
    EXPECT_TRUE(delegate->settingsController().generalPane().rendersSafely());
    start();
    EXPECT_THAT(said(), testing::IsEmpty()) << "the user knows";
}

TEST_F(SafeRenderingTest, RestartsWhereTheUserSaysSoAndIsKept)
{
    start();
    start();
    panels.press(0);
    EXPECT_EQ(restarts, 1);
    EXPECT_TRUE(SafeRendering::isKept(defaults));

    start().handle({ .rendering = Rendering::safe });
    EXPECT_THAT(said(), testing::IsEmpty()) << "it is so already";
    delegate->settingsController().generalPane().setRendersSafely(false);
    delegate->applicationWillTerminate();

    start().handle({ .window = LaunchRequest::Window::leaveHidden, .rendering = Rendering::safe });
    EXPECT_THAT(said(), testing::IsEmpty());
    delegate->handle({ .rendering = Rendering::safe });
    EXPECT_THAT(said(), testing::ElementsAre("Safe rendering takes effect at the next start"));
    panels.press(0);
    EXPECT_EQ(restarts, 2);
}

}
}
