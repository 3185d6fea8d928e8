#include "Platform/Gtk/Renderers.h"

#include <dlfcn.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

namespace tarn::gtk {

namespace {

struct Variable {
    char const* name;
    char const* value;
    // The user's way to say the contrary.
    char const* contrary;
};

constexpr std::array toolkitInSoftware {
    Variable { "GDK_DEBUG", "gl-disable", nullptr },
    Variable { "GSK_RENDERER", "cairo", nullptr },
};
constexpr std::array engineInSoftware {
    Variable { "WEBKIT_DISABLE_DMABUF_RENDERER", "1", "WEBKIT_FORCE_DMABUF_RENDERER" },
};
constexpr std::array engineWithoutDriver {
    Variable { "WEBKIT_DISABLE_COMPOSITING_MODE", "1", "WEBKIT_FORCE_COMPOSITING_MODE" },
    // For what pages draw with GL themselves.
    Variable { "LIBGL_ALWAYS_SOFTWARE", "1", nullptr },
};

std::vector<char const*>& chosen()
{
    static std::vector<char const*> names;
    return names;
}

void choose(std::span<Variable const> variables)
{
    for (auto const& [name, value, contrary] : variables) {
        if (!g_getenv(name) && !(contrary && g_getenv(contrary)) && g_setenv(name, value, FALSE))
            chosen().push_back(name);
    }
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

// The engine asks for EGL in this process too, and never draws with it: in software that loads a compiler for shaders
// (50 MiB of code, 12 MiB of memory) for nothing, before the first page. The list of drivers is read once, at the first
// question; the pages' own processes read it anew.
void keepGlOutOfThisProcess()
{
    static constexpr char const* drivers = "__EGL_VENDOR_LIBRARY_DIRS";
    static constexpr int extensions = 0x3055;
    if (g_getenv(drivers) || g_getenv("__EGL_VENDOR_LIBRARY_FILENAMES"))
        return;
    auto* const library = dlopen("libEGL.so.1", RTLD_LAZY);
    auto const query = library
        ? reinterpret_cast<char const* (*)(void* display, int name)>(dlsym(library, "eglQueryString"))
        : nullptr;
    if (!query)
        return;
    g_setenv(drivers, "/nonexistent", FALSE);
    query(nullptr, extensions);
    g_unsetenv(drivers);
}

}

void chooseRenderers(Rendering rendering)
{
    bool const userChose = g_getenv("GSK_RENDERER") != nullptr;
    bool const isSafe = rendering == Rendering::safe;
    if (!isSafe && (userChose || !onlySoftwareGl()))
        return;
    choose(engineInSoftware);
    if (isSafe)
        choose(engineWithoutDriver);
    if (userChose)
        return;
    choose(toolkitInSoftware);
    keepGlOutOfThisProcess();
}

void keepScrollBarsStill()
{
    if (!chosen().empty())
        g_object_set(gtk_settings_get_default(), "gtk-overlay-scrolling", FALSE, nullptr);
}

std::span<char const* const> chosenRendererVariables()
{
    return chosen();
}

}
