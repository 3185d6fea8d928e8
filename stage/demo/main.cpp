// Tarn on the stand-in services: the same application, with a data-store provider that leads every session to the
// stage, and folders of its own.

#include "Platform/Gtk/Application.h"
#include "Platform/Gtk/Renderers.h"
#include "Profiles/ProfileStore.h"
#include "StageServer.h"

#include <glibmm/init.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace {

// Two people are signed in from the start, so that there is something to switch between.
void addProfiles(std::filesystem::path const& applicationSupport)
{
    tarn::ProfileStore store(applicationSupport / "Tarn" / "v2",
        { .now = [] { return std::chrono::system_clock::now(); },
            .makeUuid = &tarn::Uuid::random,
            .log = tarn::logToSystem });
    if (store.createdFresh())
        store.create("Work", { tarn::GoogleApp::allCases.begin(), tarn::GoogleApp::allCases.end() });
}

tarn::gtk::Application::Options demoOptions()
{
    auto const home = std::filesystem::path(g_get_user_state_dir()) / "tarn-demo";
    return {
        .applicationId = TARN_APPLICATION_ID ".Demo",
        .data = home / "data",
        .cache = home / "cache",
        .configuration = home / "config",
        .downloads = tarn::gtk::Application::userOptions().downloads,
        .prepareData = &addProfiles,
    };
}

tarn::stage::StageOptions stageOptions()
{
    tarn::stage::StageOptions options;
    options.signIn = tarn::stage::SignIn::automatic;
    if (auto const* const file = std::getenv("TARN_STAGE_LOG"))
        options.logFile = file;
    return options;
}

void leadTo(tarn::stage::StageServer const& stage, WebKitNetworkSession* session)
{
    auto* const proxy = webkit_network_proxy_settings_new(stage.proxyUri().c_str(), nullptr);
    webkit_network_session_set_proxy_settings(session, WEBKIT_NETWORK_PROXY_MODE_CUSTOM, proxy);
    webkit_network_proxy_settings_free(proxy);
    // The stage's certificate is made anew at each start.
    webkit_network_session_set_tls_errors_policy(session, WEBKIT_TLS_ERRORS_POLICY_IGNORE);
}

}

int main(int argc, char* argv[])
{
    tarn::gtk::chooseRenderers();
    auto options = demoOptions();
    g_set_prgname(options.applicationId.c_str());
    g_set_application_name("Tarn");
    Glib::init();
    try {
        tarn::stage::StageServer const stage(tarn::stage::StageServer::defaultServices(), stageOptions());
        options.sessionSetUp = [&stage](WebKitNetworkSession* session) { leadTo(stage, session); };
        auto const application = Glib::make_refptr_for_instance(new tarn::gtk::Application(options));
        return application->run(argc, argv);
    } catch (std::exception const& error) {
        std::cerr << "tarn-demo: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
