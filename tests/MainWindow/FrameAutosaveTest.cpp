#include "MainWindow/FrameAutosave.h"

#include "Fakes/FakeDesktop.h"
#include "Fakes/ManualRunLoop.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

using platform::WindowFrame;

TEST(FrameAutosave, ReadsWhatItWroteAndNothingElse)
{
    for (WindowFrame const frame : { WindowFrame { 1300, 900, false }, WindowFrame { 700, 500, true } })
        EXPECT_EQ(FrameAutosave::decode(FrameAutosave::encode(frame)), frame);
    for (auto const* const text : { "", "x", "1300", "1300x", "x900", "1300x900 ", "1300x900maximized", "1300 x900",
             "99999999999x1", "12x12x12", " maximized" })
        EXPECT_FALSE(FrameAutosave::decode(text)) << text;
}

TEST(FrameAutosave, RestoresWithinWhatAWindowCanBe)
{
    test::FakeUserDefaults defaults;
    test::ManualRunLoop runLoop;
    FrameAutosave const autosave(defaults, runLoop, "Main");
    WindowFrame const fallback { 1300, 900, false };
    struct Case {
        char const* saved;
        WindowFrame restored;
    };
    for (auto const& [saved, restored] : {
             Case { "800x600 maximized", { 800, 600, true } },
             Case { "nonsense", fallback },
             Case { "-5x2", { 700, 500, false } },
             Case { "2000000000x600", { 16384, 600, false } },
         }) {
        defaults.values["Main"] = saved;
        EXPECT_EQ(autosave.restore(fallback, 700, 500), restored) << saved;
    }
    defaults.values.clear();
    EXPECT_EQ(autosave.restore(fallback, 700, 500), fallback);
}

TEST(FrameAutosave, SavesOnceTheFrameIsStill)
{
    test::FakeUserDefaults defaults;
    test::ManualRunLoop runLoop;
    FrameAutosave autosave(defaults, runLoop, "Main");
    for (int width = 800; width < 900; ++width) {
        autosave.frameDidChange({ width, 600, false });
        runLoop.advance(FrameAutosave::settleTime / 2);
    }
    EXPECT_EQ(defaults.writes, 0);
    runLoop.advance(FrameAutosave::settleTime);
    EXPECT_EQ(defaults.values["Main"], "899x600");
    EXPECT_EQ(defaults.writes, 1);

    // At the end nothing is lost, and nothing is written for nothing.
    autosave.frameDidChange({ 700, 500, true });
    autosave.flush();
    autosave.frameDidChange({ 700, 500, true });
    autosave.flush();
    runLoop.advance(FrameAutosave::settleTime * 2);
    EXPECT_EQ(defaults.values["Main"], "700x500 maximized");
    EXPECT_EQ(defaults.writes, 2);
}

}
}
