#pragma once

#include "App/SafeRendering.h"
#include "App/UpdaterManager.h"
#include "MainWindow/MainWindowController.h"
#include "Platform/Activation.h"
#include "Platform/LoginItem.h"
#include "Platform/NotificationCenter.h"
#include "Platform/PowerMonitor.h"
#include "Profiles/ProfileStore.h"

#include <filesystem>

namespace tarn {

// All that the application takes from outside: the platform's ports, its folders, clock, identifiers and log.
struct AppEnvironment {
    // The user's folder for application data; Tarn's own folder is made in it.
    std::filesystem::path applicationSupport;
    // The user's folder for downloads.
    std::filesystem::path downloads;
    ProfileStore::Environment store;
    platform::WebEngine& engine;
    WindowFactory& windows;
    platform::Workspace& workspace;
    platform::DockTile& dockTile;
    platform::Panels& panels;
    platform::NetworkMonitor& networkMonitor;
    platform::PowerMonitor& powerMonitor;
    platform::LoginItem& loginItem;
    platform::UserDefaults& defaults;
    platform::RunLoop& runLoop;
    platform::Activation& activation;
    // None where the application is to notify nobody, as in most tests.
    platform::NotificationCenter* notificationCenter { nullptr };
    // None where there is nothing to update.
    platform::Updater* updater { nullptr };
    UpdaterManager::Configuration update {};
    SafeRendering::Start start {};
    // The process hosts automated tests: the application stops at its menu.
    bool hostsTests { false };
    Log log;
};

}
