#include "MainWindow/SidebarView.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

class SidebarViewTest : public testing::Test {
protected:
    SidebarViewTest()
    {
        sidebar.onChange = [this] { ++changes; };
    }
    SidebarButton const& button(GoogleApp app) const { return sidebar.appButtons()[app.position()]; }

    SidebarView sidebar;
    int changes { 0 };
};

TEST_F(SidebarViewTest, HiddenButtonsKeepTheirState)
{
    sidebar.setEnabledApps({ GoogleApp::drive });
    sidebar.setActive(GoogleApp::mail);
    sidebar.setUnread(true);
    EXPECT_FALSE(button(GoogleApp::mail).isVisible);

    sidebar.setEnabledApps({ GoogleApp::mail, GoogleApp::drive });
    EXPECT_TRUE(button(GoogleApp::mail).isVisible);
    EXPECT_TRUE(button(GoogleApp::mail).isActive);
    EXPECT_TRUE(button(GoogleApp::mail).showsDot);
    EXPECT_FALSE(button(GoogleApp::drive).isActive);
    EXPECT_FALSE(button(GoogleApp::drive).showsDot);

    sidebar.setActive(std::nullopt);
    EXPECT_FALSE(button(GoogleApp::mail).isActive);
}

TEST_F(SidebarViewTest, TellsItsWidgetOnlyOfChanges)
{
    sidebar.setUnread(true);
    EXPECT_EQ(changes, 1);
    sidebar.setUnread(true);
    sidebar.setActive(std::nullopt);
    sidebar.setEnabledApps({ GoogleApp::allCases.begin(), GoogleApp::allCases.end() });
    EXPECT_EQ(changes, 1);
    sidebar.setProfile("Work", std::nullopt);
    sidebar.setProfile("Work", std::nullopt);
    EXPECT_EQ(changes, 2);
}

TEST_F(SidebarViewTest, ClicksReachTheOwnerOnlyForApps)
{
    sidebar.clickApp("mail"); // nobody listens yet
    std::vector<GoogleApp> selected;
    sidebar.onSelectApp = [&](GoogleApp app) { selected.push_back(app); };
    sidebar.clickApp("keep");
    sidebar.clickApp("Keep");
    sidebar.clickApp("");
    EXPECT_THAT(selected, testing::ElementsAre(GoogleApp(GoogleApp::keep)));
}

TEST_F(SidebarViewTest, TheProfileButtonSaysWhoseItIs)
{
    EXPECT_EQ(sidebar.profileButton().tooltip, "Switch profile");
    sidebar.setProfile("Work", std::nullopt);
    EXPECT_EQ(sidebar.profileButton().tooltip, "Work: switch profile");
    EXPECT_EQ(sidebar.profileButton().accessibilityLabel, "Profile: Work");
}

TEST_F(SidebarViewTest, TheRingIsThereWhileTheMenuIsOpen)
{
    sidebar.clickProfile();
    EXPECT_FALSE(sidebar.profileButton().isMenuOpen) << "no menu, no ring";

    sidebar.onProfile = [&] { sidebar.popUpProfileMenu({ .title = "Profiles", .entries = {} }); };
    sidebar.clickProfile();
    EXPECT_TRUE(sidebar.profileButton().isMenuOpen);
    EXPECT_TRUE(sidebar.profileMenu());

    sidebar.profileMenuDidClose();
    EXPECT_FALSE(sidebar.profileButton().isMenuOpen);
    EXPECT_FALSE(sidebar.profileMenu());
    EXPECT_EQ(changes, 2);
}

}
}
