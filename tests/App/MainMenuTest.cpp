#include "App/MainMenu.h"

#include "Apps/GoogleApp.h"

#include <gmock/gmock.h>

#include <set>
#include <tuple>

namespace tarn {
namespace {

using platform::MenuItem;

std::vector<MenuItem> items()
{
    std::vector<MenuItem> result;
    for (auto const& menu : MainMenu::build()) {
        for (auto const& entry : menu.entries) {
            if (auto const* const item = std::get_if<MenuItem>(&entry))
                result.push_back(*item);
        }
    }
    return result;
}

TEST(MainMenu, NoTwoItemsShareAKey)
{
    std::set<std::tuple<char32_t, bool, bool>> keys;
    for (auto const& item : items()) {
        if (item.key) {
            EXPECT_TRUE(keys.emplace(item.key->character, item.key->control, item.key->option).second) << item.title;
        }
    }
}

TEST(MainMenu, AppsHaveTheirNumberAsKeyAndTheirPositionAsTag)
{
    int position = 0;
    for (auto const& item : items()) {
        if (std::get<platform::Command>(item.action) != platform::Command::showApp)
            continue;
        auto const app = GoogleApp::allCases[static_cast<std::size_t>(position)];
        EXPECT_EQ(item.title, app.title());
        EXPECT_EQ(item.tag, position++);
        EXPECT_EQ(item.key->character, U'0' + static_cast<char32_t>(position));
    }
    EXPECT_EQ(position, 7);
}

}
}
