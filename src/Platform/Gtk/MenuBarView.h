#pragma once

#include "Platform/Gtk/MenuModel.h"
#include "Platform/MenuBar.h"

#include <gtkmm/applicationwindow.h>
#include <gtkmm/popovermenubar.h>

#include <map>
#include <vector>

namespace tarn::gtk {

// Draws a MenuBar, and makes its commands actions of a window, with their keys.
class MenuBarView {
public:
    // What the platform itself does with a command that the core leaves to it.
    using PlatformCommands = std::map<platform::Command, std::function<void()>>;

    MenuBarView(platform::MenuBar&, Gtk::ApplicationWindow&, PlatformCommands);
    ~MenuBarView();
    MenuBarView(MenuBarView const&) = delete;
    MenuBarView& operator=(MenuBarView const&) = delete;

    Gtk::Widget& widget() { return m_widget; }
    // The keys belong to the application: to be called once the window is its.
    void setAccelerators(Gtk::Application&);

private:
    void addActions(platform::Menu const&);
    void addAction(platform::MenuItem const&);
    void rebuild();
    void revalidate();
    std::optional<platform::CommandState> stateOf(platform::Command, int tag) const;

    struct Entry {
        platform::Command command;
        int tag;
        Glib::RefPtr<Gio::SimpleAction> action;
        std::vector<std::string> accelerators;
    };

    platform::MenuBar& m_menuBar;
    Gtk::ApplicationWindow& m_window;
    PlatformCommands m_platformCommands;
    std::vector<Entry> m_entries;
    std::vector<MenuModel> m_models;
    Gtk::PopoverMenuBar m_widget;
};

}
