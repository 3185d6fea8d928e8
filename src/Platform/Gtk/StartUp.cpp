#include "Platform/Gtk/StartUp.h"

#include "App/CommandLine.h"
#include "Platform/Gtk/EmptyTheme.h"
#include "Platform/Gtk/Renderers.h"

#include <glibmm/init.h>
#include <linux/close_range.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iostream>

namespace tarn::gtk {

namespace {

// The new beginning gets the environment as the user gave it. The links of the old one are not its business; its option
// is for when the setting could not be saved.
[[noreturn]] void restart(std::string program)
{
    for (auto const* const name : chosenRendererVariables())
        g_unsetenv(name);
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    std::string option = "--safe-rendering";
    std::array<char*, 3> const arguments { program.data(), option.data(), nullptr };
    execv("/proc/self/exe", arguments.data());
    std::cerr << "tarn: could not start again: " << g_strerror(errno) << '\n';
    std::exit(EXIT_FAILURE);
}

// The old beginning's children end as ours.
void watchChildren()
{
    std::ifstream children("/proc/thread-self/children");
    for (GPid child = 0; children >> child;)
        g_child_watch_add(
            child, [](GPid, int, gpointer) {}, nullptr);
}

}

void prepareStart(Application::Options& options, int argc, char const* const* argv)
{
    Glib::init();
    // Docks match windows to the desktop file by this name.
    g_set_prgname(options.applicationId.c_str());
    g_set_application_name("Tarn");
    auto const meaning = CommandLine::parse({ argv + (argc > 0 ? 1 : 0), argv + argc });
    auto const* const request = std::get_if<LaunchRequest>(&meaning);
    options.rendering = SafeRendering::plan({
        .isAskedFor = request && request->rendering == Rendering::safe,
        .isKept = SafeRendering::isKept(Application::userDefaults(options)),
        .blankStarts = Application::blankStarts(options).count(),
    });
    chooseRenderers(options.rendering.rendering);
    beginWithEmptyTheme();
}

int runApplication(Application::Options options, int argc, char** argv)
{
    watchChildren();
    auto application = Glib::make_refptr_for_instance(new Application(std::move(options)));
    auto const status = application->run(argc, argv);
    bool const isToRestart = application->isToRestart();
    application.reset();
    if (isToRestart)
        restart(argv[0]);
    return status;
}

}
