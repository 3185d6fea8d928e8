#pragma once

#include "Platform/Gtk/MenuBarView.h"
#include "Support/Lifetime.h"

#include <gtkmm/window.h>

#include <set>

namespace tarn::gtk {

// The editing commands of a window. They act on the page or the text field that has the keyboard, or had it before the
// menu was opened.
class EditingCommands {
public:
    explicit EditingCommands(Gtk::Window&);
    ~EditingCommands();
    EditingCommands(EditingCommands const&) = delete;
    EditingCommands& operator=(EditingCommands const&) = delete;

    // The states of the commands may have changed.
    std::function<void()> onChange;

    void addTo(MenuBarView::PlatformCommands&);

private:
    struct Row;
    static Row const rows[];

    void focusChanged();
    void askPage();
    void perform(Row const&);

    Gtk::Window& m_window;
    GWeakRef m_focused;
    bool m_isInMenu { false };
    // As the page said when the menu was opened.
    std::set<platform::Command> m_unavailable;
    Lifetime m_lifetime;
};

}
