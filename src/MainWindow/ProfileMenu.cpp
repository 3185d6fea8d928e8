#include "MainWindow/ProfileMenu.h"

namespace tarn::ProfileMenu {

namespace {

constexpr int pictureSize = 18;

}

platform::Avatar avatar(std::optional<std::filesystem::path> image, int size)
{
    return { .image = std::move(image), .size = size };
}

platform::Menu make(ProfileStore& profiles, std::function<void()> onManage)
{
    platform::Menu menu { .title = title, .entries = {} };
    for (auto const& profile : profiles.profiles()) {
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
            .avatar = avatar(profiles.avatarImage(profile), pictureSize),
        });
    }
    if (onManage) {
        menu.entries.emplace_back(platform::Separator {});
        menu.entries.emplace_back(platform::MenuItem { .title = "Manage Profiles…", .action = std::move(onManage) });
    }
    return menu;
}

}
