#include "App/MainMenu.h"

#include "Apps/GoogleApp.h"
#include "Apps/Mailto.h"
#include "MainWindow/ProfileMenu.h"

#include <array>
#include <optional>
#include <string>

namespace tarn::MainMenu {

using platform::Command;
using platform::KeyEquivalent;
using platform::Menu;
using platform::MenuItem;
using platform::Separator;

namespace {

MenuItem item(char const* title, Command command, std::optional<KeyEquivalent> key = std::nullopt)
{
    return { .title = title, .action = command, .key = key };
}

Menu appMenu()
{
    return { .title = "Tarn",
        .entries = {
            item("About Tarn", Command::about),
            item("Check for Updates…", Command::checkForUpdates),
            Separator {},
            item("Settings…", Command::openSettings, KeyEquivalent { U',' }),
            item("Set as Default Email App", Command::setDefaultEmailApp),
            Separator {},
            item("Hide Tarn", Command::hide, KeyEquivalent { U'h' }),
            item("Hide Others", Command::hideOthers, KeyEquivalent { .character = U'h', .option = true }),
            item("Show All", Command::showAll),
            Separator {},
            item("Quit Tarn", Command::quit, KeyEquivalent { U'q' }),
        } };
}

Menu newMenu()
{
    struct Entry {
        char const* title;
        std::string address;
    };
    std::string const calendar = GoogleApp(GoogleApp::calendar).url().string();
    std::string const contacts = GoogleApp(GoogleApp::contacts).url().string();
    std::string const docs = "https://docs.google.com/";
    std::array const entries {
        Entry { "Email", Mailto::newEmail().string() },
        Entry { "Calendar Event", calendar + "calendar/u/0/r/eventedit" },
        Entry { "Task", calendar + "calendar/u/0/r/tasks" },
        Entry { "Appointment Schedule", calendar + "calendar/u/0/r/appointment" },
        Entry { "Contact", contacts + "new" },
        Entry { "Google Doc", docs + "document/create" },
        Entry { "Google Sheet", docs + "spreadsheets/create" },
        Entry { "Google Slide", docs + "presentation/create" },
    };
    Menu menu { .title = "New", .entries = {} };
    for (auto const& entry : entries) {
        auto newItem = item(entry.title, Command::newItem);
        newItem.tag = static_cast<int>(menu.entries.size());
        newItem.representedUrl = Url::parse(entry.address);
        if (newItem.tag == 0)
            newItem.key = KeyEquivalent { U'n' };
        menu.entries.emplace_back(std::move(newItem));
    }
    return menu;
}

Menu fileMenu()
{
    return { .title = "File",
        .entries = {
            newMenu(),
            Separator {},
            item("Close Window", Command::closeWindow, KeyEquivalent { U'w' }),
            Separator {},
            item("Print…", Command::printPage, KeyEquivalent { U'p' }),
        } };
}

Menu findMenu()
{
    return { .title = "Find",
        .entries = {
            item("Find…", Command::showFind, KeyEquivalent { U'f' }),
            item("Find Next", Command::findNext, KeyEquivalent { U'g' }),
            item("Find Previous", Command::findPrevious, KeyEquivalent { U'G' }),
        } };
}

Menu spellingMenu()
{
    return { .title = "Spelling and Grammar",
        .entries = {
            item("Show Spelling and Grammar", Command::showSpelling, KeyEquivalent { U':' }),
            item("Check Document Now", Command::checkSpelling, KeyEquivalent { U';' }),
            Separator {},
            item("Check Spelling While Typing", Command::checkSpellingWhileTyping),
        } };
}

Menu editMenu()
{
    return { .title = "Edit",
        .entries = {
            item("Undo", Command::undo, KeyEquivalent { U'z' }),
            item("Redo", Command::redo, KeyEquivalent { U'Z' }),
            Separator {},
            item("Cut", Command::cut, KeyEquivalent { U'x' }),
            item("Copy", Command::copy, KeyEquivalent { U'c' }),
            item("Paste", Command::paste, KeyEquivalent { U'v' }),
            item("Select All", Command::selectAll, KeyEquivalent { U'a' }),
            Separator {},
            findMenu(),
            spellingMenu(),
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
            item("Back", Command::goBack, KeyEquivalent { U'[' }),
            item("Forward", Command::goForward, KeyEquivalent { U']' }),
            item("Reload Page", Command::reloadPage, KeyEquivalent { U'r' }),
            Separator {},
            item("Zoom In", Command::zoomIn, KeyEquivalent { U'+' }),
            // Plus is Shift-equals on most keyboards: the key without Shift zooms in as well.
            MenuItem { .title = "Zoom In", .action = Command::zoomIn, .key = KeyEquivalent { U'=' }, .hidden = true },
            item("Zoom Out", Command::zoomOut, KeyEquivalent { U'-' }),
            item("Actual Size", Command::actualSize, KeyEquivalent { U'0' }),
            Separator {},
            item("Enter Full Screen", Command::toggleFullScreen, KeyEquivalent { .character = U'f', .control = true }),
        });
    return menu;
}

Menu windowMenu()
{
    return { .title = "Window",
        .entries = {
            item("Minimize", Command::minimize, KeyEquivalent { U'm' }),
            item("Zoom", Command::zoomWindow),
        } };
}

}

std::vector<Menu> build()
{
    return {
        appMenu(),
        fileMenu(),
        editMenu(),
        viewMenu(),
        Menu { .title = ProfileMenu::title, .entries = {}, .changes = true },
        windowMenu(),
    };
}

}
