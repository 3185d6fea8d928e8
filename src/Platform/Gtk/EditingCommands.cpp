#include "Platform/Gtk/EditingCommands.h"

#include "Platform/Gtk/Ref.h"

#include <webkit/webkit.h>

namespace tarn::gtk {

EditingCommands::EditingCommands(Gtk::Window& window)
    : m_window(window)
{
    g_weak_ref_init(&m_focused, nullptr);
    m_window.property_focus_widget().signal_changed().connect([this] { focusChanged(); });
}

EditingCommands::~EditingCommands()
{
    g_weak_ref_clear(&m_focused);
}

void EditingCommands::focusChanged()
{
    auto* const focused = gtk_window_get_focus(GTK_WINDOW(m_window.gobj()));
    bool const isMenu = focused
        && (gtk_widget_get_ancestor(focused, GTK_TYPE_POPOVER_MENU)
            || gtk_widget_get_ancestor(focused, GTK_TYPE_POPOVER_MENU_BAR));
    if (focused && !isMenu)
        g_weak_ref_set(&m_focused, focused);
}

void EditingCommands::addTo(MenuBarView::PlatformCommands& commands)
{
    using platform::Command;
    struct Row {
        Command command;
        char const* engineCommand;
        char const* fieldAction;
    };
    for (auto const& row : {
             Row { Command::undo, WEBKIT_EDITING_COMMAND_UNDO, "text.undo" },
             Row { Command::redo, WEBKIT_EDITING_COMMAND_REDO, "text.redo" },
             Row { Command::cut, WEBKIT_EDITING_COMMAND_CUT, "clipboard.cut" },
             Row { Command::copy, WEBKIT_EDITING_COMMAND_COPY, "clipboard.copy" },
             Row { Command::paste, WEBKIT_EDITING_COMMAND_PASTE, "clipboard.paste" },
             Row { Command::selectAll, WEBKIT_EDITING_COMMAND_SELECT_ALL, "selection.select-all" },
         })
        commands[row.command] = { [this, row] { perform(row.engineCommand, row.fieldAction); } };
}

void EditingCommands::perform(char const* engineCommand, char const* fieldAction)
{
    auto const focused = adopt(static_cast<GObject*>(g_weak_ref_get(&m_focused)));
    if (!focused)
        return;
    if (WEBKIT_IS_WEB_VIEW(focused.get()))
        webkit_web_view_execute_editing_command(WEBKIT_WEB_VIEW(focused.get()), engineCommand);
    else
        gtk_widget_activate_action(GTK_WIDGET(focused.get()), fieldAction, nullptr);
}

}
