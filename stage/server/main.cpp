// The stand-in services by themselves, for programs that are compared with each other. Prints the address of the proxy
// and runs until it is ended.

#include "StageServer.h"

#include <glib-unix.h>

#include <csignal>
#include <cstdlib>
#include <iostream>

int main()
{
    try {
        tarn::stage::StageOptions options;
        options.signIn = tarn::stage::SignIn::automatic;
        if (auto const* const file = std::getenv("TARN_STAGE_LOG"))
            options.logFile = file;
        tarn::stage::StageServer const stage(tarn::stage::StageServer::defaultServices(), options);
        std::cout << stage.proxyUri() << std::endl;

        auto* const loop = g_main_loop_new(nullptr, FALSE);
        for (int const signal : { SIGTERM, SIGINT }) {
            g_unix_signal_add(
                signal,
                [](gpointer running) -> gboolean {
                    g_main_loop_quit(static_cast<GMainLoop*>(running));
                    return G_SOURCE_CONTINUE;
                },
                loop);
        }
        g_main_loop_run(loop);
        g_main_loop_unref(loop);
    } catch (std::exception const& error) {
        std::cerr << "stage-server: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
