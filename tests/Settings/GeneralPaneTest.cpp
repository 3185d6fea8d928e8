#include "Settings/GeneralPane.h"

#include "Fakes/FakeDesktop.h"
#include "Fakes/FakePanels.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

TEST(GeneralPane, SaysWhatTheDesktopDid)
{
    test::FakeLoginItem item;
    test::FakeUserDefaults defaults;
    test::FakePanels panels;
    SafeRendering safeRendering({}, defaults, panels);
    GeneralPane pane(item, safeRendering);
    int changes = 0;
    pane.onChange = [&] { ++changes; };
    pane.setStartsAtLogin(false);
    EXPECT_EQ(changes, 0) << "nothing to do";

    item.error = "Not allowed here.";
    pane.setStartsAtLogin(true);
    EXPECT_EQ(pane.error(), "Not allowed here.");
    EXPECT_FALSE(pane.startsAtLogin());

    item.error.reset();
    pane.setStartsAtLogin(true);
    EXPECT_EQ(pane.error(), std::nullopt);
    EXPECT_TRUE(pane.startsAtLogin() && item.enabled);
    EXPECT_EQ(changes, 2);
}

}
}
