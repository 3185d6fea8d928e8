#include "Platform/Gtk/Renderers.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn::gtk {

namespace {

constexpr std::array<std::pair<char const*, char const*>, 3> softwareChoice { {
    { "GDK_DEBUG", "gl-disable" },
    { "GSK_RENDERER", "cairo" },
    { "WEBKIT_DISABLE_DMABUF_RENDERER", "1" },
} };

std::vector<char const*>& chosen()
{
    static std::vector<char const*> names;
    return names;
}

bool onlySoftwareGl()
{
    if (auto const* const forced = std::getenv("LIBGL_ALWAYS_SOFTWARE"); forced && *forced && *forced != '0')
        return true;
    std::error_code error;
    std::filesystem::directory_iterator const nodes("/dev/dri", error);
    return std::none_of(begin(nodes), end(nodes),
        [](auto const& node) { return node.path().filename().string().starts_with("renderD"); });
}

}

void chooseRenderers()
{
    if (g_getenv("GSK_RENDERER") || !onlySoftwareGl())
        return;
    for (auto const& [name, value] : softwareChoice) {
        if (!g_getenv(name) && g_setenv(name, value, FALSE))
            chosen().push_back(name);
    }
}

std::span<char const* const> chosenRendererVariables()
{
    return chosen();
}

}
