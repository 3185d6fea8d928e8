// Tarn on the stand-in services: the same application, with a data-store provider that leads every session to the
// stage, and folders of its own.

#include "Platform/Gtk/Application.h"
#include "Platform/Gtk/CommandLineAnswer.h"
#include "Platform/Gtk/SessionBus.h"
#include "Platform/Gtk/StartUp.h"
#include "Profiles/ProfileStore.h"
#include "StageServer.h"

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

void leadTo(std::string const& proxyUri, WebKitNetworkSession* session)
{
    auto* const proxy = webkit_network_proxy_settings_new(proxyUri.c_str(), nullptr);
    webkit_network_session_set_proxy_settings(session, WEBKIT_NETWORK_PROXY_MODE_CUSTOM, proxy);
    webkit_network_proxy_settings_free(proxy);
    // The stage's certificate is made anew at each start.
    webkit_network_session_set_tls_errors_policy(session, WEBKIT_TLS_ERRORS_POLICY_IGNORE);
}

}

int main(int argc, char* argv[])
{
    if (auto const status = tarn::gtk::answerCommandLine(argc, argv))
        return *status;
    tarn::gtk::forgetUnreachableSessionBus();
    auto options = demoOptions();
    tarn::gtk::prepareStart(options, argc, argv);
    try {
        // Services that run elsewhere are not part of what is measured.
        auto const* const elsewhere = std::getenv("TARN_STAGE_PROXY");
        std::optional<tarn::stage::StageServer> stage;
        if (!elsewhere)
            stage.emplace(tarn::stage::StageServer::defaultServices(), stageOptions());
        auto const proxyUri = elsewhere ? elsewhere : stage->proxyUri();
        options.sessionSetUp = [proxyUri](WebKitNetworkSession* session) { leadTo(proxyUri, session); };
        return tarn::gtk::runApplication(options, argc, argv);
    } catch (std::exception const& error) {
        std::cerr << "tarn-demo: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
