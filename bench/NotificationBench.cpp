// What a notification costs on its way from the page to the desktop's daemon, and a click on its way back: the whole
// application with its engine, a page of the stand-in services, a real session bus, and a daemon that answers at once.
//   scripts/with-desktop build/release/bench/notification-bench

#include "Platform/Gtk/NotificationCenter.h"
#include "Web/FakeNotificationDaemon.h"
#include "Web/WebTest.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

namespace {

using namespace tarn;

constexpr int rounds = 500;
constexpr int burst = 1000;

double milliseconds(gint64 microseconds)
{
    return static_cast<double>(microseconds) / 1000;
}

std::string quantiles(std::vector<double> values)
{
    std::ranges::sort(values);
    auto const at = [&](double part) { return values.at(static_cast<std::size_t>(part * (values.size() - 1.0))); };
    std::array<char, 128> text {};
    std::snprintf(
        text.data(), text.size(), "median %.1f ms, 95%% within %.1f ms, most %.1f ms", at(0.5), at(0.95), at(1));
    return text.data();
}

// Proportional set size, in MiB.
double memoryOf(std::string const& pid)
{
    std::ifstream stream("/proc/" + pid + "/smaps_rollup");
    for (std::string word; stream >> word;) {
        long kibibytes = 0;
        if (word == "Pss:" && stream >> kibibytes)
            return static_cast<double>(kibibytes) / 1024;
    }
    return 0;
}

class NotificationBench final : public test::WebTest {
public:
    void run()
    {
        notificationCenter = std::make_unique<gtk::NotificationCenter>(
            Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), TARN_APPLICATION_ID);
        test::FakeNotificationDaemon daemon;
        launch();
        open(GoogleApp::mail);
        goRound(daemon);
        flood(daemon);
        if (HasFailure())
            std::exit(EXIT_FAILURE);
    }

private:
    void TestBody() override { }
    gtk::WebView& mail() { return view(GoogleApp::mail); }

    // Each click makes the next notification: every round is the way there and the way back.
    void goRound(test::FakeNotificationDaemon& daemon)
    {
        std::vector<double> there;
        std::vector<double> back;
        std::vector<double> whole;
        gint64 emitted = 0;
        daemon.onNotify = [&](std::uint32_t id) {
            auto const now = g_get_real_time();
            auto const& body = daemon.notices.back().body;
            // The page's clock says when it was clicked and when it asked for this one, in whole milliseconds.
            auto const clicked = std::atof(body.c_str());
            auto const called = std::atof(body.substr(body.find(' ')).c_str());
            there.push_back(milliseconds(now) - called);
            if (emitted != 0) {
                back.push_back(clicked - milliseconds(emitted));
                whole.push_back(milliseconds(now - emitted));
            }
            emitted = g_get_real_time();
            daemon.emitAction(id);
        };
        evaluate(mail(),
            "void (() => { const next = (clicked) => { const n = new Notification('round',"
            "{ body: clicked + ' ' + Date.now() }); n.onclick = () => { const t = Date.now(); n.close();"
            "if (window.stop !== true) next(t); }; }; next(0); })()");
        waitUntil([&] { return whole.size() >= rounds; }, "rounds");
        evaluate(mail(), "void (window.stop = true)");
        daemon.onNotify = nullptr;
        std::cout << "page call to daemon call:  " << quantiles(there) << "\n"
                  << "click to page event:       " << quantiles(back) << "\n"
                  << "there and back:            " << quantiles(whole) << " (" << whole.size() << " rounds)\n";
    }

    void flood(test::FakeNotificationDaemon& daemon)
    {
        auto const own = std::to_string(getpid());
        evaluate(mail(), "1");
        for (int repetition = 1; repetition <= 3; ++repetition) {
            daemon.notices.clear();
            auto const before = memoryOf(own);
            auto const start = g_get_monotonic_time();
            auto const posting = evaluate(mail(),
                "(() => { const start = performance.now(); for (let i = 0; i < " + std::to_string(burst)
                    + "; ++i) new Notification('number ' + i, { body: 'x'.repeat(200) }); return performance.now() - "
                      "start; })()");
            waitUntil([&] { return daemon.notices.size() == burst; }, "all of the burst");
            auto const took = milliseconds(g_get_monotonic_time() - start);
            int inOrder = 0;
            while (inOrder < burst
                && daemon.notices.at(static_cast<std::size_t>(inOrder)).title == "number " + std::to_string(inOrder))
                ++inOrder;
            std::printf(
                "%d in a burst:  %.0f ms in the page, %.0f ms until the daemon has the last; %zu arrived, %d in "
                "order; %.1f MiB more in the application\n",
                burst, std::atof(posting.c_str()), took, daemon.notices.size(), inOrder, memoryOf(own) - before);
            EXPECT_EQ(inOrder, burst);
        }
    }
};

}

int main()
{
    testing::InitGoogleTest();
    NotificationBench().run();
}
