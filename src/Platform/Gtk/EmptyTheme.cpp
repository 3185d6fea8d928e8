#include "Platform/Gtk/EmptyTheme.h"

#include <glib.h>

#include <utility>

namespace tarn::gtk {

namespace {

constexpr char const* variable = "GTK_THEME";

bool isSet { false };

}

void beginWithEmptyTheme()
{
    isSet = !g_getenv(variable) && g_setenv(variable, "Adwaita-empty", FALSE);
}

void endEmptyTheme()
{
    if (std::exchange(isSet, false))
        g_unsetenv(variable);
}

}
