#include "Platform/Gtk/KeyLabels.h"

#include <glib.h>
#include <gtk/gtk.h>

namespace tarn::gtk {

std::vector<std::string> accelerators(platform::KeyEquivalent const& key)
{
    // The command key and the control key are one here; the desktop's own key for full screen is free.
    if (key.control && key.character == U'f')
        return { "F11" };

    std::string modifiers = "<Primary>";
    if (key.option)
        modifiers += "<Alt>";
    if (g_unichar_isupper(key.character))
        modifiers += "<Shift>";

    auto const* const name = gdk_keyval_name(gdk_keyval_to_lower(gdk_unicode_to_keyval(key.character)));
    std::vector<std::string> result { modifiers + name };
    auto const* const keypad = key.character == U'+' ? "KP_Add"
        : key.character == U'-'                      ? "KP_Subtract"
        : key.character == U'0'                      ? "KP_0"
                                                     : nullptr;
    if (keypad)
        result.push_back(modifiers + keypad);
    return result;
}

bool isTypedIntoPages(platform::Command command)
{
    using platform::Command;
    switch (command) {
    case Command::undo:
    case Command::redo:
    case Command::cut:
    case Command::copy:
    case Command::paste:
    case Command::selectAll:
        return true;
    default:
        return false;
    }
}

std::string keyLabel(platform::KeyEquivalent const& key)
{
    guint keyval = 0;
    GdkModifierType modifiers {};
    gtk_accelerator_parse(accelerators(key).front().c_str(), &keyval, &modifiers);
    g_autofree char* label = gtk_accelerator_get_label(keyval, modifiers);
    return label;
}

}
