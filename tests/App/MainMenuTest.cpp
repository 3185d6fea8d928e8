#include "App/MainMenu.h"

#include "Apps/GoogleApp.h"
#include "Platform/MenuBar.h"

#include <gmock/gmock.h>

#include <set>
#include <tuple>

namespace tarn {
namespace {

using platform::Command;
using platform::MenuItem;

std::vector<MenuItem> items(std::vector<platform::MenuEntry> const& entries)
{
    std::vector<MenuItem> result;
    for (auto const& entry : entries) {
        if (auto const* const item = std::get_if<MenuItem>(&entry))
            result.push_back(*item);
        else if (auto const* const submenu = std::get_if<platform::Menu>(&entry))
            std::ranges::move(items(submenu->entries), std::back_inserter(result));
    }
    return result;
}

std::vector<MenuItem> items()
{
    std::vector<MenuItem> result;
    for (auto const& menu : MainMenu::build())
        std::ranges::move(items(menu.entries), std::back_inserter(result));
    return result;
}

// One line a menu: titles with their keys, "|" for a separator, "*" for a hidden item, submenus in parentheses.
std::string outline(platform::Menu const& menu)
{
    std::string line = menu.title + ":";
    for (auto const& entry : menu.entries) {
        if (auto const* const item = std::get_if<MenuItem>(&entry)) {
            line += (item->hidden ? " *" : " ") + item->title;
            if (item->key) {
                line += std::string("<") + (item->key->control ? "^" : "") + (item->key->option ? "~" : "");
                line += static_cast<char>(item->key->character) + std::string(">");
            }
        } else if (auto const* const submenu = std::get_if<platform::Menu>(&entry)) {
            line += " (" + outline(*submenu) + ")";
        } else {
            line += " |";
        }
    }
    return line;
}

TEST(MainMenu, HasAllItemsInOrderWithTheirKeys)
{
    std::vector<std::string> outlines;
    for (auto const& menu : MainMenu::build())
        outlines.push_back(outline(menu));
    EXPECT_THAT(outlines,
        testing::ElementsAre("Tarn: About Tarn Check for Updates… | Settings…<,> Set as Default Email App | "
                             "Hide Tarn<h> Hide Others<~h> Show All | Quit Tarn<q>",
            "File: (New: Email<n> Calendar Event Task Appointment Schedule Contact Google Doc Google Sheet "
            "Google Slide) | Close Window<w> | Print…<p>",
            "Edit: Undo<z> Redo<Z> | Cut<x> Copy<c> Paste<v> Select All<a> | "
            "(Find: Find…<f> Find Next<g> Find Previous<G>) (Spelling and Grammar: Show Spelling and Grammar<:> "
            "Check Document Now<;> | Check Spelling While Typing)",
            "View: Mail<1> Calendar<2> Drive<3> Gemini<4> Keep<5> Tasks<6> Contacts<7> | Back<[> Forward<]> "
            "Reload Page<r> | Zoom In<+> *Zoom In<=> Zoom Out<-> Actual Size<0> | Enter Full Screen<^f>",
            "Profiles:", "Window: Minimize<m> Zoom"));
}

TEST(MainMenu, NoTwoItemsAreTheSameCommandOfTheSameTagOrShareAKey)
{
    std::set<std::pair<Command, int>> commands;
    std::set<std::tuple<char32_t, bool, bool>> keys;
    for (auto const& item : items()) {
        EXPECT_TRUE(item.hidden || commands.emplace(std::get<Command>(item.action), item.tag).second) << item.title;
        if (item.key) {
            EXPECT_TRUE(keys.emplace(item.key->character, item.key->control, item.key->option).second) << item.title;
        }
    }
}

TEST(MainMenu, AppsHaveTheirPositionAsTagAndTheirIcon)
{
    int position = 0;
    for (auto const& item : items()) {
        if (std::get<Command>(item.action) != Command::showApp)
            continue;
        EXPECT_EQ(item.tag, position);
        EXPECT_EQ(item.icon, GoogleApp::allCases[static_cast<std::size_t>(position++)].iconName());
    }
    EXPECT_EQ(position, 7);
}

TEST(MainMenu, NewItemsCarryWhatTheyOpen)
{
    platform::MenuBar const bar(MainMenu::build());
    std::vector<std::string> addresses;
    for (int tag = 0; auto const url = bar.representedUrl(Command::newItem, tag); ++tag)
        addresses.push_back(url->string());
    EXPECT_THAT(addresses,
        testing::ElementsAre("https://mail.google.com/mail/?view=cm&fs=1",
            "https://calendar.google.com/calendar/u/0/r/eventedit", "https://calendar.google.com/calendar/u/0/r/tasks",
            "https://calendar.google.com/calendar/u/0/r/appointment", "https://contacts.google.com/new",
            "https://docs.google.com/document/create", "https://docs.google.com/spreadsheets/create",
            "https://docs.google.com/presentation/create"));
    EXPECT_FALSE(bar.representedUrl(Command::showApp, 0));
}

}
}
