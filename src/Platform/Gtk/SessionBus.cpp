#include "Platform/Gtk/SessionBus.h"

#include <glib.h>
#include <unistd.h>

#include <string>
#include <string_view>

namespace tarn::gtk {

void forgetUnreachableSessionBus()
{
    constexpr char const* variable = "DBUS_SESSION_BUS_ADDRESS";
    constexpr std::string_view beginning = "unix:path=";
    auto const* const value = g_getenv(variable);
    std::string_view const address = value ? value : "";
    if (!address.starts_with(beginning))
        return;
    auto const escaped = std::string(address.substr(beginning.size(), address.find_first_of(",;") - beginning.size()));
    auto* const path = g_uri_unescape_string(escaped.c_str(), nullptr);
    if (!path || access(path, R_OK | W_OK) != 0)
        g_unsetenv(variable);
    g_free(path);
}

}
