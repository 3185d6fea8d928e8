#include "Settings/ProfilesPane.h"

#include "Fakes/FakePanels.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <set>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProfilesPaneTest : public testing::Test {
protected:
    ProfilesPaneTest() { std::ofstream(folder / "photo.JPG") << "picture"; }

    Profile personal() const { return profiles.profiles().front(); }
    ProfileEditor& editor() { return *pane.editor(); }
    void choosePicture()
    {
        editor().choosePicture();
        panels.choose({ folder / "photo.JPG" });
    }
    std::set<std::string> avatarFiles() const
    {
        std::set<std::string> names;
        auto const avatars = profiles.folder() / "avatars";
        if (std::filesystem::exists(avatars)) {
            for (auto const& entry : std::filesystem::directory_iterator(avatars))
                names.insert(entry.path().filename());
        }
        return names;
    }

    TemporaryFolder folder;
    test::FakePanels panels;
    ProfileStore profiles { folder / "store",
        { .now = [] { return Timestamp {}; }, .makeUuid = &Uuid::random, .log = [](std::string const&) {} } };
    std::vector<Uuid> deleted;
    std::optional<std::string> deletionError;
    ProfilesPane pane { profiles, panels, &Uuid::random, [this](Uuid const& id, auto completion) {
                           profiles.remove(id);
                           deleted.push_back(id);
                           completion(deletionError);
                       } };
};

TEST_F(ProfilesPaneTest, ListsSwitchesAndOffersToDeleteOnlyAmongSeveral)
{
    EXPECT_FALSE(pane.rows()[0].canBeDeleted);
    int changes = 0;
    pane.onChange = [&] { ++changes; };
    auto const work = profiles.create("Work", { GoogleApp::mail }).id;
    EXPECT_EQ(changes, 1);
    auto rows = pane.rows();
    EXPECT_TRUE(rows[0].isActive && rows[0].canBeDeleted);
    EXPECT_TRUE(!rows[1].isActive && rows[1].canBeDeleted);
    EXPECT_EQ(rows[1].picture, (platform::Avatar { .image = std::nullopt, .size = 32 }));

    pane.switchTo(work);
    EXPECT_TRUE(pane.rows()[1].isActive);
    pane.switchTo(Uuid::random());
    pane.edit(Uuid::random());
    EXPECT_EQ(pane.editor(), nullptr);
}

TEST_F(ProfilesPaneTest, MakesAProfileWithANameAPictureAndItsApps)
{
    pane.newProfile();
    EXPECT_EQ(editor().confirmTitle(), "Create");
    EXPECT_EQ(editor().draft().enabledApps.size(), 7);
    EXPECT_FALSE(editor().canConfirm()) << "no name yet";
    editor().setName(" \t\u00a0\n");
    editor().save();
    ASSERT_NE(pane.editor(), nullptr) << "nothing but spaces is no name";
    editor().setName("  Work \u2003");
    EXPECT_TRUE(editor().canConfirm());
    for (auto const app : GoogleApp::allCases)
        editor().setEnabled(app, false);
    EXPECT_FALSE(editor().canConfirm()) << "no app";
    for (GoogleApp const app : { GoogleApp::keep, GoogleApp::mail, GoogleApp::drive })
        editor().setEnabled(app, true);
    choosePicture();
    EXPECT_EQ(panels.openPanels.size(), 0);

    editor().save();
    EXPECT_EQ(pane.editor(), nullptr);
    auto const& made = profiles.profiles().back();
    EXPECT_EQ(made.name, "Work");
    EXPECT_THAT(made.enabledApps,
        ElementsAre(GoogleApp(GoogleApp::mail), GoogleApp(GoogleApp::drive), GoogleApp(GoogleApp::keep)));
    EXPECT_THAT(avatarFiles(), ElementsAre(*made.avatarFile));
    EXPECT_EQ(profiles.activeID(), personal().id);
}

TEST_F(ProfilesPaneTest, EditsKeepWhatIsNotEdited)
{
    profiles.setZoom(1.2, GoogleApp::mail, personal().id);
    auto const before = personal();
    pane.edit(before.id);
    EXPECT_EQ(editor().confirmTitle(), "Save");
    EXPECT_EQ(editor().draft().name, before.name);
    editor().setName("Home");
    editor().setEnabled(GoogleApp::tasks, false);
    editor().save();
    auto expected = before;
    expected.name = "Home";
    std::erase(expected.enabledApps, GoogleApp(GoogleApp::tasks));
    EXPECT_EQ(personal(), expected);
}

TEST_F(ProfilesPaneTest, PicturesThatEndUpUnusedAreDeleted)
{
    pane.edit(personal().id);
    for (int choice = 0; choice < 3; ++choice)
        choosePicture();
    EXPECT_EQ(avatarFiles().size(), 3);
    editor().cancel();
    EXPECT_EQ(pane.editor(), nullptr);
    EXPECT_THAT(avatarFiles(), IsEmpty());
    EXPECT_EQ(personal().avatarFile, std::nullopt);

    pane.edit(personal().id);
    for (int choice = 0; choice < 3; ++choice)
        choosePicture();
    editor().save();
    EXPECT_THAT(avatarFiles(), ElementsAre(*personal().avatarFile));

    pane.edit(personal().id);
    choosePicture();
    editor().removePicture();
    EXPECT_EQ(editor().picture(), (platform::Avatar { .image = std::nullopt, .size = 48 }));
    editor().cancel();
    EXPECT_THAT(avatarFiles(), ElementsAre(*personal().avatarFile)) << "the stored picture stays";

    pane.edit(personal().id);
    editor().removePicture();
    editor().save();
    EXPECT_THAT(avatarFiles(), IsEmpty());
}

TEST_F(ProfilesPaneTest, WhatFailsIsSaidInTheEditor)
{
    pane.newProfile();
    choosePicture();
    auto const picture = editor().draft().avatarFile;
    editor().choosePicture();
    EXPECT_TRUE(panels.openPanels.front().panel.imagesOnly);
    EXPECT_EQ(panels.openPanels.front().panel.message, "Choose a picture for this profile");
    panels.choose({ folder / "gone.png" });
    EXPECT_EQ(editor().error(), "Tarn could not read that picture. Try another one.");
    EXPECT_EQ(editor().draft().avatarFile, picture);
    editor().choosePicture();
    panels.choose({});
    EXPECT_TRUE(editor().error()) << "the user changed their mind";
    choosePicture();
    EXPECT_EQ(editor().error(), std::nullopt);

    // The panel is still open when the editor goes.
    editor().choosePicture();
    editor().cancel();
    panels.choose({ folder / "photo.JPG" });
    EXPECT_THAT(avatarFiles(), IsEmpty());
}

TEST_F(ProfilesPaneTest, DeletesOnlyAfterAnAnswerAndSaysWhatFailed)
{
    auto const work = profiles.create("A & B", { GoogleApp::mail }).id;
    pane.askToDelete(work);
    auto const& alert = panels.alerts.front().panel;
    EXPECT_EQ(alert.message, "Delete “A & B”?");
    EXPECT_EQ(alert.informativeText, "Tarn signs it out of Google and removes its data from this Mac.");
    EXPECT_EQ(alert.buttons[0].role, platform::ButtonRole::destructive);
    EXPECT_EQ(alert.buttons[1].role, platform::ButtonRole::cancel);
    panels.press(1);
    EXPECT_THAT(deleted, IsEmpty());

    deletionError = "in use";
    pane.askToDelete(work);
    panels.press(0);
    EXPECT_THAT(deleted, ElementsAre(work));
    EXPECT_EQ(panels.alerts.front().panel.message, "Could not delete the profile");
    EXPECT_EQ(panels.alerts.front().panel.informativeText, "in use");
    panels.press(0);

    pane.askToDelete(personal().id);
    panels.press(0);
    ASSERT_EQ(panels.alerts.size(), 1) << "the store refuses to give up the last one";
    EXPECT_EQ(profiles.profiles().size(), 1);
}

}
}
