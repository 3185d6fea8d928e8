#pragma once

#include "Platform/Gtk/MenuBarView.h"

#include <gtkmm/window.h>

namespace tarn::gtk {

// The editing commands of a window. They act on the page or the text field that has the keyboard, or had it before the
// menu was opened.
class EditingCommands {
public:
    explicit EditingCommands(Gtk::Window&);
    ~EditingCommands();
    EditingCommands(EditingCommands const&) = delete;
    EditingCommands& operator=(EditingCommands const&) = delete;

    void addTo(MenuBarView::PlatformCommands&);

private:
    void focusChanged();
    void perform(char const* engineCommand, char const* fieldAction);

    Gtk::Window& m_window;
    GWeakRef m_focused;
};

}
