#include "Fakes/FakePanels.h"
#include "Web/StageProcess.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

namespace tarn {
namespace {

// The same again and again: nothing that should be gone stays. Short in the suite; with TARN_ENDURANCE set as long as a
// year of work, and then the memory may not grow either.
class EnduranceTest : public test::WebTest {
protected:
    EnduranceTest() { proxyUri = services.proxyUri(); }

    static int rounds(int inSuite, int byCommand) { return isLong() ? byCommand : inSuite; }
    static bool isLong() { return std::getenv("TARN_ENDURANCE") != nullptr; }

    void launchWithPanels()
    {
        desktopPanels = &panelsOfTheTest;
        launch();
    }
    // Runs the step so often; the memory of the first fifth is what the end is compared with.
    void repeat(int times, std::function<void(int)> const& step)
    {
        double before = 0;
        for (int turn = 0; turn < times; ++turn) {
            if (turn == times / 5)
                before = memory();
            step(turn);
        }
        settle();
        RecordProperty("MiBBefore", std::to_string(before));
        RecordProperty("MiBAfter", std::to_string(memory()));
        std::printf("%d times: %.1f MiB, then %.1f MiB\n", times, before, memory());
        if (isLong()) {
            EXPECT_LT(memory(), 1.05 * before);
        }
    }
    void settle()
    {
        while (g_main_context_iteration(nullptr, FALSE)) { }
    }
    // What the process alone has written to, in MiB.
    static double memory()
    {
        std::istringstream lines(read("/proc/self/smaps_rollup"));
        for (std::string word; lines >> word;) {
            double kibibytes = 0;
            if (word == "Pss_Anon:" && lines >> kibibytes)
                return kibibytes / 1024;
        }
        throw std::runtime_error("the kernel does not tell");
    }
    // Counts the view among those alive until the engine's object goes.
    void watch(gtk::WebView& page)
    {
        if (g_object_get_data(G_OBJECT(page.engineView()), "watched"))
            return;
        g_object_set_data(G_OBJECT(page.engineView()), "watched", this);
        ++alive;
        g_object_weak_ref(
            G_OBJECT(page.engineView()), [](gpointer count, GObject*) { --*static_cast<int*>(count); }, &alive);
    }
    void waitForAlive(int most)
    {
        waitUntil([&] { return alive <= most; }, "views that should be gone");
        EXPECT_LE(alive, most);
    }

    test::StageProcess services;
    // Before the panels that may hold views.
    int alive { 0 };
    test::FakePanels panelsOfTheTest;
};

TEST_F(EnduranceTest, SwitchesOfProfile)
{
    launchWithPanels();
    std::array const ids { profiles().activeID(), profiles().create("Work", { GoogleApp::mail, GoogleApp::keep }).id };
    waitForPage(GoogleApp::mail);
    watch(view(GoogleApp::mail));
    repeat(rounds(12, 1'000), [&](int turn) {
        profiles().setActive(ids[(turn + 1) % 2]);
        watch(view(GoogleApp::mail));
        // Many a switch comes while the page of the one before is still loading.
        if (turn % 3 == 0)
            waitForPage(GoogleApp::mail);
        // The pages shut down in their own time; a queue of them is no leak.
        waitForAlive(4);
    });
    waitForPage(GoogleApp::mail);
    waitForAlive(1);
}

TEST_F(EnduranceTest, SwitchesOfApp)
{
    launchWithPanels();
    for (auto const app : GoogleApp::allCases) {
        open(app);
        watch(view(app));
    }
    int const views = alive;
    repeat(rounds(100, 10'000), [&](int turn) {
        controller().show(GoogleApp::allCases[static_cast<std::size_t>(turn) % GoogleApp::allCases.size()]);
        settle();
    });
    for (auto const app : GoogleApp::allCases)
        watch(view(app));
    EXPECT_EQ(alive, views) << "a switch makes no view";
    EXPECT_EQ(evaluate(view(controller().current()), "document.visibilityState"), "visible");
}

TEST_F(EnduranceTest, Popups)
{
    launchWithPanels();
    open(GoogleApp::mail);
    auto& mail = view(GoogleApp::mail);
    auto const windows = g_list_model_get_n_items(gtk_window_get_toplevels());
    repeat(rounds(5, 200), [&](int turn) {
        evaluate(mail, "void (window.popup = open('/_stage/popup', '', 'width=400,height=300'))");
        waitUntil([&] { return popups.size() == static_cast<std::size_t>(turn) + 1; }, "popup");
        watch(*popups.back());
        waitUntil([&] { return popups.back()->title().value_or("") != ""; }, "its page");
        evaluate(mail, "void popup.close()");
        waitUntil([&] { return controller().popups().size() == 0; }, "closed popup");
        waitForAlive(2);
    });
    waitForAlive(0);
    EXPECT_EQ(g_list_model_get_n_items(gtk_window_get_toplevels()), windows);
}

TEST_F(EnduranceTest, Downloads)
{
    std::filesystem::create_directory(folder / "Downloads");
    launchWithPanels();
    open(GoogleApp::mail);
    auto& list = controller().downloads().list();
    int const times = rounds(10, 500);
    repeat(times, [&](int turn) {
        evaluate(view(GoogleApp::mail), "void (location.href = '/_stage/download/file?size=100000')");
        waitUntil([&] { return !panelsOfTheTest.savePanels.empty(); }, "panel");
        panelsOfTheTest.save(folder / "Downloads" / std::to_string(turn));
        waitUntil([&] { return list.runningCount() == 0; }, "the end of download " + std::to_string(turn));
    });
    EXPECT_EQ(list.items().size(), std::min<std::size_t>(DownloadList::mostFinished, static_cast<std::size_t>(times)));
    int whole = 0;
    for (auto const& entry : std::filesystem::directory_iterator(folder / "Downloads"))
        whole += entry.file_size() == 100'000 ? 1 : 0;
    EXPECT_EQ(whole, times) << "each as a whole, and nothing beside";
}

// The network process ends at any step of a journey: afterwards the user comes back to every page, as who they were.
// (A page's process must not end while it starts: the engine then ends the program.)
TEST_F(EnduranceTest, TheNetworkProcessEndsAtEveryStep)
{
    launchWithPanels();
    auto const home = profiles().activeID();
    auto const work = profiles().create("Work", { GoogleApp::mail, GoogleApp::keep }).id;
    open(GoogleApp::mail);
    std::map<Uuid, std::string> accounts;
    std::array<std::function<void()>, 5> const steps {
        [&] { controller().show(GoogleApp::keep); },
        [&] { open(GoogleApp::keep); },
        [&] {
            evaluate(view(GoogleApp::keep), "void open('/_stage/popup', '', 'width=400,height=300')");
            waitUntil([&] { return controller().popups().size() == 1; }, "popup");
        },
        [&] { profiles().setActive(work); },
        [&] { profiles().setActive(home); },
    };
    for (std::size_t step = 0; step < steps.size(); ++step) {
        SCOPED_TRACE(step);
        steps[step]();
        test::killEngineProcesses("WebKitNetworkPr");
        for (GoogleApp const app : { GoogleApp::mail, GoogleApp::keep }) {
            controller().show(app);
            controller().perform(platform::Command::reloadPage, 0);
            waitForPage(app);
            auto const account = evaluate(view(app), "document.documentElement.dataset.account");
            EXPECT_EQ(accounts.emplace(profiles().activeID(), account).first->second, account);
        }
    }
    EXPECT_NE(accounts[home], accounts[work]) << "still two people";
}

}
}
