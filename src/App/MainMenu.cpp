#include "App/MainMenu.h"

#include "Apps/GoogleApp.h"
#include "MainWindow/ProfileMenu.h"

#include <initializer_list>

namespace tarn::MainMenu {

using platform::Command;
using platform::KeyEquivalent;
using platform::Menu;
using platform::MenuItem;
using platform::Separator;

namespace {

Menu appMenu()
{
    return { .title = "Tarn",
        .entries = {
            MenuItem { .title = "About Tarn", .action = Command::about },
            Separator {},
            MenuItem { .title = "Quit Tarn", .action = Command::quit, .key = KeyEquivalent { U'q' } },
        } };
}

Menu fileMenu()
{
    return { .title = "File",
        .entries = {
            MenuItem { .title = "Close Window", .action = Command::closeWindow, .key = KeyEquivalent { U'w' } },
        } };
}

Menu viewMenu()
{
    Menu menu { .title = "View", .entries = {} };
    for (auto const app : GoogleApp::allCases) {
        menu.entries.emplace_back(MenuItem {
            .title = std::string(app.title()),
            .action = Command::showApp,
            .key = KeyEquivalent { U'0' + static_cast<char32_t>(app.shortcutNumber()) },
            .tag = static_cast<int>(app.position()),
            .icon = std::string(app.iconName()),
        });
    }
    menu.entries.insert(menu.entries.end(),
        {
            Separator {},
            MenuItem { .title = "Back", .action = Command::goBack, .key = KeyEquivalent { U'[' } },
            MenuItem { .title = "Forward", .action = Command::goForward, .key = KeyEquivalent { U']' } },
            MenuItem { .title = "Reload Page", .action = Command::reloadPage, .key = KeyEquivalent { U'r' } },
            Separator {},
            MenuItem { .title = "Zoom In", .action = Command::zoomIn, .key = KeyEquivalent { U'+' } },
            // Plus is Shift-equals on most keyboards: the key without Shift zooms in as well.
            MenuItem { .title = "Zoom In", .action = Command::zoomIn, .key = KeyEquivalent { U'=' }, .hidden = true },
            MenuItem { .title = "Zoom Out", .action = Command::zoomOut, .key = KeyEquivalent { U'-' } },
            MenuItem { .title = "Actual Size", .action = Command::actualSize, .key = KeyEquivalent { U'0' } },
            Separator {},
            MenuItem { .title = "Enter Full Screen",
                .action = Command::toggleFullScreen,
                .key = KeyEquivalent { .character = U'f', .control = true } },
        });
    return menu;
}

Menu windowMenu()
{
    return { .title = "Window",
        .entries = {
            MenuItem { .title = "Minimize", .action = Command::minimize, .key = KeyEquivalent { U'm' } },
        } };
}

}

std::vector<Menu> build()
{
    return { appMenu(), fileMenu(), viewMenu(), Menu { .title = ProfileMenu::title, .entries = {} }, windowMenu() };
}

}
