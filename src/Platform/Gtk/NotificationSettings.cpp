#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/Renderers.h"
#include "Platform/Gtk/Workspace.h"

#include <gio/gio.h>

#include <array>
#include <string>

namespace tarn::gtk {

namespace {

struct Way {
    // One of the names in XDG_CURRENT_DESKTOP.
    char const* desktop;
    std::array<char const*, 3> command;
};

// The first one that is installed is taken.
constexpr std::array ways {
    Way { "GNOME", { "gnome-control-center", "notifications", nullptr } },
    Way { "Unity", { "gnome-control-center", "notifications", nullptr } },
    Way { "Budgie", { "budgie-control-center", "notifications", nullptr } },
    Way { "Budgie", { "gnome-control-center", "notifications", nullptr } },
    Way { "KDE", { "systemsettings", "kcm_notifications", nullptr } },
    Way { "KDE", { "systemsettings5", "kcm_notifications", nullptr } },
    Way { "KDE", { "kcmshell6", "kcm_notifications", nullptr } },
    Way { "KDE", { "kcmshell5", "kcm_notifications", nullptr } },
    Way { "XFCE", { "xfce4-notifyd-config", nullptr, nullptr } },
    Way { "MATE", { "mate-notification-properties", nullptr, nullptr } },
    Way { "X-Cinnamon", { "cinnamon-settings", "notifications", nullptr } },
};

bool isInstalled(char const* program)
{
    g_autofree char* path = g_find_program_in_path(program);
    return path;
}

}

void Workspace::openNotificationSettings()
{
    auto const* const current = g_getenv("XDG_CURRENT_DESKTOP");
    g_auto(GStrv) desktops = g_strsplit(current ? current : "", ":", -1);
    for (auto const& way : ways) {
        if (!g_strv_contains(desktops, way.desktop) || !isInstalled(way.command[0]))
            continue;
        auto const launcher = adopt(g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_NONE));
        for (auto const* const name : chosenRendererVariables())
            g_subprocess_launcher_unsetenv(launcher.get(), name);
        GError* error = nullptr;
        if (auto* const process = g_subprocess_launcher_spawnv(launcher.get(), way.command.data(), &error)) {
            g_object_unref(process);
        } else {
            m_log(std::string("[Notifications] could not open the desktop's settings: ") + error->message);
            g_error_free(error);
        }
        return;
    }
    m_log("[Notifications] this desktop has no known settings for notifications");
}

}
