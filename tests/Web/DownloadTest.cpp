#include "Fakes/FakePanels.h"
#include "Platform/Gtk/NotificationCenter.h"
#include "Web/FakeNotificationDaemon.h"
#include "Web/WebServer.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>
#include <sys/mount.h>

#include <fstream>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::uintmax_t megabyte = 1'000'000;

class DownloadTest : public test::WebTest {
protected:
    DownloadTest()
    {
        std::filesystem::create_directory(downloads);
        // The pages' own notifications are not the matter here.
        notificationCenter = std::make_unique<gtk::NotificationCenter>(
            Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), TARN_APPLICATION_ID);
    }

    void openMail(platform::Panels& usedPanels)
    {
        desktopPanels = &usedPanels;
        launch();
        open(GoogleApp::mail);
        waitUntil([&] { return window().is_active(); }, "active window");
    }
    gtk::WebView& mail() { return view(GoogleApp::mail); }
    DownloadList& list() { return controller().downloads().list(); }
    void go(std::string const& url) { evaluate(mail(), "void (location.href = '" + url + "')"); }
    void waitForPanel()
    {
        waitUntil([&] { return !answers.savePanels.empty(); }, "save panel");
    }
    // Saves what the page goes to, and waits until it is running.
    void start(std::string const& url, std::filesystem::path const& file)
    {
        go(url);
        waitForPanel();
        answers.save(file);
        waitUntil([&] { return list().runningCount() > 0; }, "running download");
    }
    void waitForBytes(std::int64_t bytes)
    {
        waitUntil([&] { return list().items().at(0).progress.completed >= bytes; }, "first bytes");
    }
    void waitForTheEnd()
    {
        waitUntil([&] { return list().runningCount() == 0; }, "end of the download");
    }
    std::vector<std::string> failures() const
    {
        std::vector<std::string> failures;
        std::ranges::copy_if(
            log, std::back_inserter(failures), [](auto const& line) { return line.starts_with("[Downloads]"); });
        return failures;
    }
    // The engine tidies up in its own time.
    void expectOnly(std::set<std::string> const& files)
    {
        waitUntil([&] { return fileNames(downloads) == files; }, "tidy folder");
        EXPECT_EQ(fileNames(downloads), files);
    }
    void write(std::filesystem::path const& file, std::string const& text) { std::ofstream(file) << text; }

    std::filesystem::path const downloads { folder / "Downloads" };
    test::FakePanels answers;
    test::WebServer server;
};

TEST_F(DownloadTest, AFileFromTheLinkToTheFileManager)
{
    test::FakeNotificationDaemon daemon;
    openMail(panels);
    click(mail(), "#download-sized");
    waitUntil([&] { return !window().is_active(); }, "save dialog with the focus");
    press("ctrl+a");
    auto const file = downloads / "mine.bin";
    type(file.string());
    press("Return");
    waitUntil([&] { return daemon.notices.size() == 1; }, "notification");
    EXPECT_EQ(daemon.notices[0].title, "Download complete");
    EXPECT_EQ(daemon.notices[0].body, "mine.bin");
    EXPECT_EQ(read(file).size(), 600'000);
    expectOnly({ "mine.bin" });
    EXPECT_EQ(defaults.values["LastDownloadFolder"], "file://" + downloads.string() + "/");

    daemon.emitAction(1);
    waitUntil([&] { return !workspace.revealed.empty(); }, "file in the file manager");
    EXPECT_THAT(workspace.revealed, ElementsAre(file.string()));
    EXPECT_THAT(failures(), IsEmpty());
    EXPECT_EQ(mail().url()->host(), "mail.google.com") << "the page stays";
}

TEST_F(DownloadTest, EveryKindOfAnswerIsSavedAsAWhole)
{
    openMail(answers);
    server.put("five.bin", 5 * megabyte);
    server.put("page.html", 1000);
    auto const saving = [](std::string const& how) {
        return "(() => { const a = document.createElement('a'); a.download = 'made.txt'; a.href = " + how
            + "; document.body.append(a); a.click(); a.remove(); })()";
    };
    auto const detached = [](std::string const& how) {
        return "(() => { const a = document.createElement('a'); a.download = 'made.txt'; a.href = " + how
            + "; a.click(); })()";
    };
    auto const location = [&](char const* path) { return "void (location.href = '" + server.url(path) + "')"; };
    std::string const blob = "URL.createObjectURL(new Blob(['made by the page']))";
    struct Case {
        std::string script;
        std::string suggested;
        std::uintmax_t size;
        bool measured;
    };
    for (auto const& [script, suggested, size, measured] : {
             Case { location("/sized/five.bin"), "five.bin", 5 * megabyte, true },
             Case { location("/unsized/five.bin"), "five.bin", 5 * megabyte, false },
             Case { location("/shown/five.bin"), "five.bin", 5 * megabyte, true },
             Case { location("/sized/page.html"), "page.html", 1000, true },
             Case { saving(blob), "made.txt", 16, true },
             Case { detached(blob), "made.txt", 16, true },
             Case { detached("'data:text/plain,hello'"), "made.txt", 5, true },
             Case { saving("'/_stage/download/a.bin?kind=inline&size=7'"), "made.txt", 7, true },
         }) {
        SCOPED_TRACE(script);
        auto const page = mail().url()->string();
        dockTile.progress.clear();
        evaluate(mail(), script);
        waitForPanel();
        EXPECT_EQ(answers.savePanels[0].panel.suggestedName, suggested);
        answers.save(downloads / "file");
        waitForTheEnd();
        ASSERT_TRUE(std::filesystem::exists(downloads / "file"));
        EXPECT_EQ(std::filesystem::file_size(downloads / "file"), size);
        EXPECT_EQ(dockTile.progress.front()->fraction.has_value(), measured);
        EXPECT_FALSE(dockTile.progress.back()) << "the plain icon again";
        EXPECT_EQ(mail().url()->string(), page);
        list().clearFinished();
        std::filesystem::remove(downloads / "file");
        expectOnly({});
    }
    EXPECT_THAT(failures(), IsEmpty());

    go(server.url("/shown/page.html"));
    waitUntil([&] { return mail().url()->host() == "127.0.0.1"; }, "page that can be shown");
    EXPECT_THAT(answers.savePanels, IsEmpty());
}

TEST_F(DownloadTest, WhatBreaksOffLeavesTheOldFile)
{
    openMail(answers);
    server.put("file", 5 * megabyte);
    auto const file = downloads / "file";
    struct Case {
        char const* what;
        std::string path;
        std::function<void()> breakOff;
        char const* reason;
    };
    for (auto const& [what, path, breakOff, reason] : {
             Case { "missing", "/missing/file", [] {}, "" },
             Case { "cancelled", "/slow/file",
                 [&] {
                     waitForBytes(1);
                     list().cancel(list().items()[0].id);
                 },
                 "cancelled" },
             Case { "the file on the server shrinks", "/slow/file",
                 [&] {
                     waitForBytes(1);
                     server.put("file", 1);
                 },
                 "onnection" },
             Case { "the part is taken away", "/slow/file",
                 [&] {
                     waitForBytes(1);
                     for (auto const& name : fileNames(downloads)) {
                         if (name != "file")
                             std::filesystem::remove(downloads / name);
                     }
                 },
                 "" },
             Case { "the server ends", "/slow/file",
                 [&] {
                     waitForBytes(1);
                     server.stop();
                 },
                 "onnection" },
         }) {
        SCOPED_TRACE(what);
        log.clear();
        write(file, "old");
        server.put("file", 300'000);
        start(server.url(path), file);
        breakOff();
        waitForTheEnd();
        ASSERT_EQ(failures().size(), 1);
        EXPECT_THAT(failures()[0], StartsWith("[Downloads] failed: "));
        EXPECT_THAT(failures()[0], HasSubstr(reason));
        EXPECT_EQ(read(file), "old");
        EXPECT_THAT(list().items(), IsEmpty());
        EXPECT_FALSE(dockTile.progress.back());
        expectOnly({ "file" });
    }
}

TEST_F(DownloadTest, TheEndOfTheProcessThatFetchesItEndsADownload)
{
    openMail(answers);
    server.put("file", 5 * megabyte);
    auto const file = downloads / "file";
    write(file, "old");
    start(server.url("/slow/file"), file);
    waitForBytes(1);
    test::killEngineProcesses("WebKitNetworkPr");
    waitForTheEnd();
    EXPECT_THAT(failures(), ElementsAre(HasSubstr("network process")));
    EXPECT_EQ(read(file), "old");
    EXPECT_FALSE(dockTile.progress.back());
    expectOnly({ "file" });
}

TEST_F(DownloadTest, APlaceThatTakesNothingFails)
{
    openMail(answers);
    server.put("file", 5 * megabyte);
    std::filesystem::create_directories(downloads / "folder" / "full");
    auto const tiny = downloads / "tiny";
    std::filesystem::create_directory(tiny);
    bool const hasTinyDisk = mount("none", tiny.c_str(), "tmpfs", 0, "size=1m") == 0;
    std::vector<std::filesystem::path> places { downloads / "gone" / "file", downloads / "folder",
        downloads / "\xFF" / "file", "/proc/file" };
    if (hasTinyDisk)
        places.push_back(tiny / "file");
    for (auto const& place : places) {
        SCOPED_TRACE(place);
        log.clear();
        start(server.url("/sized/file"), place);
        waitForTheEnd();
        EXPECT_THAT(failures(), ElementsAre(StartsWith("[Downloads] failed: ")));
        EXPECT_THAT(list().items(), IsEmpty());
    }
    EXPECT_EQ(fileNames(downloads), (std::set<std::string> { "folder", "tiny" }));
    EXPECT_EQ(fileNames(tiny), std::set<std::string>());
    if (hasTinyDisk)
        umount2(tiny.c_str(), MNT_DETACH);
    else
        GTEST_SKIP() << "a full disk was not tried: mounting one is not allowed here";
}

TEST_F(DownloadTest, TheEndOfItsPageDoesNotEndADownloadButTheEndOfTheApplicationDoes)
{
    openMail(answers);
    server.put("file", 200'000);
    server.put("long", 100 * megabyte);
    start(server.url("/slow/file"), downloads / "file");
    go(server.url("/slow/long"));
    waitForPanel();
    auto const other = profiles().create("Other", { GoogleApp::mail });
    profiles().setActive(other.id);
    waitForPage(GoogleApp::mail);
    answers.save(downloads / "long");
    waitUntil([&] { return list().items().back().state == DownloadItem::State::finished; }, "file");
    EXPECT_EQ(std::filesystem::file_size(downloads / "file"), 200'000);
    waitUntil([&] { return list().items().at(0).progress.completed > 0; }, "the other file");
    terminate();
    EXPECT_THAT(failures(), ElementsAre("[Downloads] cancelled what was still running: 1"));
    expectOnly({ "file" });
}

TEST_F(DownloadTest, TwoGigabytes)
{
    if (std::filesystem::space(downloads).available < 4'000 * megabyte)
        GTEST_SKIP() << "no room on the disk";
    openMail(answers);
    constexpr std::uintmax_t size = (std::uintmax_t { 1 } << 31) + 1;
    server.put("file", size);
    start(server.url("/sized/file"), downloads / "file");
    // Each step is waited for by itself: the whole takes as long as the disk does.
    for (int step = 1; step < 20 && !HasFailure(); ++step)
        waitUntil([&] { return list().runningCount() == 0 || list().fraction() >= step / 20.0; }, "progress");
    waitForTheEnd();
    EXPECT_EQ(std::filesystem::file_size(downloads / "file"), size);
    for (auto const& bar : dockTile.progress) {
        if (bar) {
            EXPECT_TRUE(bar->fraction.has_value());
        }
    }
    EXPECT_THAT(failures(), IsEmpty());
}

}
}
