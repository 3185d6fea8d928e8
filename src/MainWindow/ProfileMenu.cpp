#include "MainWindow/ProfileMenu.h"

namespace tarn::ProfileMenu {

platform::Menu make(ProfileStore& profiles, std::function<void()> onManage)
{
    platform::Menu menu { .title = title, .entries = {} };
    for (auto const& profile : profiles.profiles()) {
        auto const image = profiles.avatarImage(profile);
        menu.entries.emplace_back(platform::MenuItem {
            .title = profile.name,
            .action =
                [&profiles, id = profile.id] {
                    try {
                        profiles.setActive(id);
                    } catch (ProfileStore::Failure const&) {
                        // Deleted while the menu was open.
                    }
                },
            .checked = profile.id == profiles.activeID(),
            .icon = image ? image->string() : std::string(),
        });
    }
    if (onManage) {
        menu.entries.emplace_back(platform::Separator {});
        menu.entries.emplace_back(platform::MenuItem { .title = "Manage Profiles…", .action = std::move(onManage) });
    }
    return menu;
}

}
