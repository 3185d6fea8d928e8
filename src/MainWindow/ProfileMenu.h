#pragma once

#include "Platform/Menu.h"
#include "Profiles/ProfileStore.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace tarn::ProfileMenu {

inline constexpr char const* title = "Profiles";

// The profiles in the store's order, the active one checked; choosing one makes it active. Then, when there is
// something to manage them with, "Manage Profiles…". The store must outlive the menu.
platform::Menu make(ProfileStore&, std::function<void()> onManage);

// A profile's picture as a circle of so many points.
platform::Avatar avatar(std::optional<std::filesystem::path> image, int size);

}
