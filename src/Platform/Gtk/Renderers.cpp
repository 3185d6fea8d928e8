#include "Platform/Gtk/Renderers.h"

#include <dlfcn.h>
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

void chooseRenderers()
{
    if (g_getenv("GSK_RENDERER") || !onlySoftwareGl())
        return;
    for (auto const& [name, value] : softwareChoice) {
        if (!g_getenv(name) && g_setenv(name, value, FALSE))
            chosen().push_back(name);
    }
    keepGlOutOfThisProcess();
}

std::span<char const* const> chosenRendererVariables()
{
    return chosen();
}

}
