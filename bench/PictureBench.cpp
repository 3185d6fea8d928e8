// What a profile's picture costs: picture-bench FILE [SIZE]. One file per run, because memory is counted at its peak.

#include "Platform/Gtk/Pictures.h"

#include <glib.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

// Of this process until now, in MiB.
double peakMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (double kilobytes = 0; word == "VmHWM:" && status >> kilobytes)
            return kilobytes / 1024;
    }
    return 0;
}

}

int main(int argc, char* argv[])
{
    if (argc < 2 || !gtk_init_check()) {
        std::cerr << "usage: picture-bench FILE [SIZE], on a display\n";
        return EXIT_FAILURE;
    }
    int const size = argc > 2 ? std::atoi(argv[2]) : 96;
    tarn::gtk::Pictures pictures;
    double const memoryBefore = peakMemory();
    auto const start = Clock::now();

    std::optional<bool> isPicture;
    pictures.load(argv[1], size, [&](auto const& texture) { isPicture = static_cast<bool>(texture); });

    // A tick a millisecond: how late one comes is how long the interface did not answer.
    auto lastTick = start;
    Clock::duration longestPause {};
    auto const tick = [&] {
        auto const now = Clock::now();
        longestPause = std::max(longestPause, now - lastTick);
        lastTick = now;
    };
    auto const source = g_timeout_add(
        1,
        [](gpointer data) -> gboolean {
            (*static_cast<decltype(tick)*>(data))();
            return G_SOURCE_CONTINUE;
        },
        const_cast<void*>(static_cast<void const*>(&tick)));
    while (!isPicture)
        g_main_context_iteration(nullptr, TRUE);
    tick();
    g_source_remove(source);

    std::cout << (*isPicture ? "picture" : "no picture") << " of " << size << " pixels after "
              << milliseconds(Clock::now() - start) << " ms; longest pause of the main loop "
              << milliseconds(longestPause) << " ms; " << peakMemory() - memoryBefore << " MiB more at the peak\n";
    return EXIT_SUCCESS;
}
