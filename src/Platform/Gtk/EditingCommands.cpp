#include "Platform/Gtk/EditingCommands.h"

#include "Platform/Gtk/Ref.h"

#include <webkit/webkit.h>

#include <memory>
#include <utility>

namespace tarn::gtk {

struct EditingCommands::Row {
    platform::Command command;
    char const* engineCommand;
    char const* fieldAction;
};

EditingCommands::Row const EditingCommands::rows[] {
    { platform::Command::undo, WEBKIT_EDITING_COMMAND_UNDO, "text.undo" },
    { platform::Command::redo, WEBKIT_EDITING_COMMAND_REDO, "text.redo" },
    { platform::Command::cut, WEBKIT_EDITING_COMMAND_CUT, "clipboard.cut" },
    { platform::Command::copy, WEBKIT_EDITING_COMMAND_COPY, "clipboard.copy" },
    { platform::Command::paste, WEBKIT_EDITING_COMMAND_PASTE, "clipboard.paste" },
    { platform::Command::selectAll, WEBKIT_EDITING_COMMAND_SELECT_ALL, "selection.select-all" },
};

EditingCommands::EditingCommands(Gtk::Window& window)
    : m_window(window)
{
    g_weak_ref_init(&m_focused, nullptr);
    m_window.property_focus_widget().signal_changed().connect(m_lifetime.guard([this] { focusChanged(); }));
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
    if (std::exchange(m_isInMenu, isMenu) != isMenu && isMenu)
        askPage();
}

void EditingCommands::askPage()
{
    m_unavailable.clear();
    auto const focused = adopt(static_cast<GObject*>(g_weak_ref_get(&m_focused)));
    if (focused && WEBKIT_IS_WEB_VIEW(focused.get())) {
        using Answer = std::function<void(bool)>;
        for (auto const& row : rows) {
            // Until the page answers, if it does, the command can be done.
            webkit_web_view_can_execute_editing_command(
                WEBKIT_WEB_VIEW(focused.get()), row.engineCommand, nullptr,
                [](GObject* view, GAsyncResult* result, gpointer data) {
                    std::unique_ptr<Answer> const answer(static_cast<Answer*>(data));
                    GError* error = nullptr;
                    bool const isPossible
                        = webkit_web_view_can_execute_editing_command_finish(WEBKIT_WEB_VIEW(view), result, &error);
                    (*answer)(isPossible || error);
                    g_clear_error(&error);
                },
                new Answer(m_lifetime.guard([this, command = row.command](bool isPossible) {
                    if (!isPossible && m_unavailable.insert(command).second && onChange)
                        onChange();
                })));
        }
    }
    if (onChange)
        onChange();
}

void EditingCommands::addTo(MenuBarView::PlatformCommands& commands)
{
    for (auto const& row : rows) {
        commands[row.command] = { [this, &row] { perform(row); },
            [this, &row] { return platform::CommandState { .enabled = !m_unavailable.contains(row.command) }; } };
    }
}

void EditingCommands::perform(Row const& row)
{
    auto const focused = adopt(static_cast<GObject*>(g_weak_ref_get(&m_focused)));
    if (!focused)
        return;
    if (WEBKIT_IS_WEB_VIEW(focused.get()))
        webkit_web_view_execute_editing_command(WEBKIT_WEB_VIEW(focused.get()), row.engineCommand);
    else
        gtk_widget_activate_action(GTK_WIDGET(focused.get()), row.fieldAction, nullptr);
}

}
