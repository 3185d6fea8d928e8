#pragma once

#include "Platform/Menu.h"

#include <vector>

namespace tarn::MainMenu {

// The menu bar's menus in order: titles, commands, keys. "Profiles" comes empty; the main window fills it.
std::vector<platform::Menu> build();

}
