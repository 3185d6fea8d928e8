#include "Downloads/DownloadManager.h"

#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeDownload.h"
#include "Fakes/FakePanels.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class DownloadManagerTest : public testing::Test {
protected:
    DownloadManagerTest() { restart(); }

    void restart()
    {
        manager = std::make_unique<DownloadManager>(DownloadManager::Environment {
            .panels = panels,
            .defaults = defaults,
            .dockTile = dockTile,
            .workspace = workspace,
            .userFolder = "/home/ada/Downloads",
            .log = [this](std::string const& line) { log.push_back(line); },
        });
        manager->onFinished = [this](std::filesystem::path const& file) { finished.push_back(file.string()); };
    }
    std::shared_ptr<test::FakeDownload> adopt(std::string const& name = "file.bin")
    {
        auto download = std::make_shared<test::FakeDownload>();
        manager->adopt(download);
        download->ask(name);
        return download;
    }
    std::shared_ptr<test::FakeDownload> start(std::string const& path, platform::DownloadProgress progress)
    {
        auto download = adopt();
        download->now = progress;
        panels.save(path);
        return download;
    }
    // Of the dock: -2 for no bar, -1 for one without a measure.
    double bar() const
    {
        auto const& shown = dockTile.progress;
        return shown.empty() || !shown.back() ? -2 : shown.back()->fraction.value_or(-1);
    }

    test::FakePanels panels;
    test::FakeUserDefaults defaults;
    test::FakeDockTile dockTile;
    test::FakeWorkspace workspace;
    std::vector<std::string> log;
    std::vector<std::string> finished;
    std::unique_ptr<DownloadManager> manager;
};

TEST_F(DownloadManagerTest, AnAnswerThatCannotOrMustNotBeShownIsADownload)
{
    struct Case {
        bool canShow;
        std::optional<std::string> disposition;
        bool download;
    };
    for (auto const& [canShow, disposition, download] : {
             Case { true, std::nullopt, false },
             Case { false, std::nullopt, true },
             Case { false, "inline", true },
             Case { true, "attachment; filename=\"a.html\"", true },
             Case { true, "ATTachment", true },
             Case { true, "attachmentish", true },
             Case { true, "inline; filename=attachment", false },
             Case { true, " attachment", false },
             Case { true, "attach", false },
             Case { true, "", false },
         }) {
        EXPECT_EQ(
            DownloadManager::shouldDownload(
                { .url = "https://mail.google.com/x", .canShowMimeType = canShow, .contentDisposition = disposition }),
            download)
            << disposition.value_or("none");
    }
}

TEST_F(DownloadManagerTest, AsksWhereAndRemembersTheFolder)
{
    auto const first = adopt("../r\xC3\xA9port.pdf");
    ASSERT_THAT(panels.savePanels, SizeIs(1));
    EXPECT_EQ(panels.savePanels[0].panel.suggestedName, "r\xC3\xA9port.pdf");
    EXPECT_EQ(panels.savePanels[0].panel.directory, "/home/ada/Downloads");
    EXPECT_EQ(panels.savePanels[0].parent, platform::SheetParent());
    EXPECT_FALSE(first->destination) << "nothing is decided while the panel is open";
    panels.save("/tmp/a b%\xFF/r.pdf");
    EXPECT_EQ(**first->destination, "/tmp/a b%\xFF/r.pdf");
    EXPECT_EQ(defaults.values["LastDownloadFolder"], "file:///tmp/a%20b%25%FF/");

    restart();
    manager->sheetWindow = [] { return platform::SheetParent(reinterpret_cast<platform::Window*>(8)); };
    adopt();
    EXPECT_EQ(panels.savePanels[0].panel.directory, "/tmp/a b%\xFF/");
    EXPECT_EQ(panels.savePanels[0].parent, platform::SheetParent(reinterpret_cast<platform::Window*>(8)));

    for (auto const* const unusable : { "", "relative", "file://", "https://x/" }) {
        panels.save(std::nullopt);
        defaults.values["LastDownloadFolder"] = unusable;
        adopt();
        EXPECT_EQ(panels.savePanels[0].panel.directory, "/home/ada/Downloads") << unusable;
    }
}

TEST_F(DownloadManagerTest, ACancelledPanelCancelsTheDownloadInSilence)
{
    auto const download = adopt();
    std::weak_ptr<platform::Download> const kept = download;
    panels.save(std::nullopt);
    ASSERT_TRUE(download->destination);
    EXPECT_FALSE(*download->destination);
    EXPECT_EQ(kept.use_count(), 1) << "the manager has let go of it";
    EXPECT_EQ(download->delegate, nullptr);
    EXPECT_THAT(log, IsEmpty());
    EXPECT_THAT(dockTile.progress, IsEmpty());
    EXPECT_EQ(defaults.writes, 0);
}

TEST_F(DownloadManagerTest, AsksForOneAfterTheOther)
{
    auto const first = adopt("first");
    auto const second = adopt("second");
    auto const third = adopt("third");
    auto const fourth = adopt("fourth");
    ASSERT_THAT(panels.savePanels, SizeIs(1));
    second->fail("the connection broke");
    panels.save(std::nullopt);
    ASSERT_THAT(panels.savePanels, SizeIs(1));
    EXPECT_EQ(panels.savePanels[0].panel.suggestedName, "third") << "the second is not asked for any more";
    EXPECT_TRUE(second->destination && !*second->destination);
    panels.dismiss({});
    EXPECT_TRUE(third->destination && !*third->destination);
    EXPECT_EQ(panels.savePanels.at(0).panel.suggestedName, "fourth");
    panels.save("/d/fourth");
    EXPECT_EQ(**fourth->destination, "/d/fourth");
}

TEST_F(DownloadManagerTest, OneBarForAllWhileAnyHasADestination)
{
    auto const undecided = adopt();
    EXPECT_THAT(dockTile.progress, IsEmpty());
    panels.save(std::nullopt);

    auto const unsized = start("/d/unsized", { 0, -1 });
    EXPECT_EQ(bar(), -1);
    unsized->receive({ 100, -1 });
    EXPECT_EQ(bar(), -1);
    unsized->finish();
    EXPECT_EQ(bar(), -2);

    auto const small = start("/d/small", { 0, 100 });
    auto const large = start("/d/large", { 0, 300 });
    small->receive({ 100, 100 });
    large->receive({ 100, 300 });
    EXPECT_EQ(bar(), 0.5);
    EXPECT_EQ(manager->list().runningCount(), 2);
    small->finish();
    large->receive({ 150, 300 });
    EXPECT_EQ(bar(), 0.5);
    large->fail("the disk is full");
    EXPECT_EQ(bar(), -2);
    EXPECT_THAT(finished, ElementsAre("/d/unsized", "/d/small"));
    EXPECT_THAT(log, ElementsAre("[Downloads] failed: the disk is full"));
    EXPECT_THAT(manager->list().items(), SizeIs(2)) << "of the one that failed nothing is shown";
}

TEST_F(DownloadManagerTest, ADownloadMayEndWhileItsPanelIsOpen)
{
    auto const broken = adopt();
    broken->fail("the connection broke");
    panels.save("/d/file");
    ASSERT_TRUE(broken->destination);
    EXPECT_FALSE(*broken->destination);
    EXPECT_THAT(log, ElementsAre("[Downloads] failed: the connection broke"));

    auto const running = start("/d/other", { 1, 2 });
    auto const open = adopt();
    manager.reset();
    EXPECT_EQ(bar(), -2);
    EXPECT_EQ(running->delegate, nullptr);
    panels.save("/d/late");
    ASSERT_TRUE(open->destination);
    EXPECT_FALSE(*open->destination) << "the manager is gone";
}

TEST_F(DownloadManagerTest, AWindowThatWasOpenedForNothingElseIsClosedAtOnce)
{
    int closed = 0;
    manager->adopt(std::make_shared<test::FakeDownload>(), [&] { ++closed; });
    EXPECT_EQ(closed, 1);
    EXPECT_THAT(panels.savePanels, IsEmpty());
}

TEST_F(DownloadManagerTest, TheListCancelsOpensAndReveals)
{
    auto const running = start("/d/running", { 1, 2 });
    auto const done = start("/d/done", { 2, 2 });
    done->finish();
    auto& list = manager->list();
    auto const doneID = list.items()[0].id;
    auto const runningID = list.items()[1].id;
    list.open(doneID);
    list.reveal(doneID);
    list.cancel(runningID);
    EXPECT_THAT(workspace.openedFiles, ElementsAre("/d/done"));
    EXPECT_THAT(workspace.revealed, ElementsAre("/d/done"));
    EXPECT_THAT(log, ElementsAre("[Downloads] failed: cancelled"));
    list.cancel(doneID);
    list.cancel(runningID);
    EXPECT_THAT(list.items(), SizeIs(1));
    EXPECT_EQ(bar(), -2);
}

}
}
