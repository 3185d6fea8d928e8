#include "Platform/Gtk/NotificationSwitch.h"

#include "Support/Ascii.h"

#include <algorithm>

namespace tarn::gtk {

namespace {

constexpr char const* schemaName = "org.gnome.desktop.notifications.application";
constexpr char const* key = "enable";

// Where the key is not somebody's who no longer looks at it.
bool desktopReadsIt()
{
    auto const* const desktops = g_getenv("XDG_CURRENT_DESKTOP");
    auto** const names = g_strsplit(desktops ? desktops : "", ":", -1);
    bool const reads = g_strv_contains(names, "GNOME") || g_strv_contains(names, "Unity");
    g_strfreev(names);
    return reads;
}

// As GNOME Shell makes it from the name of the desktop file.
std::string settingsPath(std::string const& applicationId)
{
    auto element = toAsciiLower(applicationId);
    std::ranges::replace_if(
        element,
        [](char character) { return !isAsciiLetter(character) && !isAsciiDigit(character) && character != '-'; }, '-');
    return "/org/gnome/desktop/notifications/application/" + element + "/";
}

}

NotificationSwitch::NotificationSwitch(std::string const& applicationId)
{
    auto* const source = desktopReadsIt() ? g_settings_schema_source_get_default() : nullptr;
    auto* const schema = source ? g_settings_schema_source_lookup(source, schemaName, TRUE) : nullptr;
    if (!schema)
        return;
    if (g_settings_schema_has_key(schema, key))
        m_settings = adopt(g_settings_new_full(schema, nullptr, settingsPath(applicationId).c_str()));
    g_settings_schema_unref(schema);
}

bool NotificationSwitch::isOn() const
{
    return !m_settings || g_settings_get_boolean(m_settings.get(), key);
}

}
