#pragma once

#include "App/AppEnvironment.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeNotificationCenter.h"
#include "Fakes/FakePanels.h"
#include "Fakes/FakeWebEngine.h"
#include "Fakes/ManualRunLoop.h"
#include "MainWindow/MainWindowController.h"
#include "Support/TemporaryFolder.h"

#include <string>
#include <vector>

namespace tarn::test {

// All that the application runs on. For a test to derive from.
class FakeSurroundings {
protected:
    ProfileStore::Environment storeEnvironment()
    {
        return { .now = [] { return Timestamp {}; }, .makeUuid = &Uuid::random, .log = [](std::string const&) {} };
    }
    AppEnvironment appEnvironment()
    {
        return {
            .applicationSupport = folder.path(),
            .downloads = folder.path(),
            .store = storeEnvironment(),
            .engine = engine,
            .windows = windows,
            .workspace = workspace,
            .dockTile = dockTile,
            .panels = panels,
            .networkMonitor = networkMonitor,
            .powerMonitor = powerMonitor,
            .loginItem = loginItem,
            .defaults = defaults,
            .runLoop = runLoop,
            .activation = activation,
            .notificationCenter = &notificationCenter,
            .log = [this](std::string const& line) { log.push_back(line); },
        };
    }
    MainWindowController::Environment windowEnvironment(platform::MenuBar& menuBar)
    {
        return {
            .engine = engine,
            .windows = windows,
            .menuBar = menuBar,
            .workspace = workspace,
            .dockTile = dockTile,
            .panels = panels,
            .networkMonitor = networkMonitor,
            .defaults = defaults,
            .runLoop = runLoop,
            .downloadsFolder = folder.path(),
            .log = [this](std::string const& line) { log.push_back(line); },
        };
    }

    TemporaryFolder folder;
    ManualRunLoop runLoop;
    FakeWebEngine engine;
    FakeWindowFactory windows;
    FakeWorkspace workspace;
    FakeDockTile dockTile;
    FakePanels panels;
    FakeNetworkMonitor networkMonitor;
    FakePowerMonitor powerMonitor;
    FakeLoginItem loginItem;
    FakeUserDefaults defaults;
    FakeActivation activation;
    FakeNotificationCenter notificationCenter;
    std::vector<std::string> log;
};

}
