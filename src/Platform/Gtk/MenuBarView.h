#pragma once

#include "Platform/Gtk/MenuBox.h"
#include "Platform/Gtk/MenuModel.h"
#include "Platform/MenuBar.h"
#include "Support/ScopedConnection.h"

#include <gtkmm/applicationwindow.h>
#include <gtkmm/popovermenubar.h>

#include <map>
#include <memory>
#include <vector>

namespace tarn::gtk {

// Draws a MenuBar, and makes its commands actions of a window, with their keys.
class MenuBarView {
public:
    // What the platform itself does with a command that the core leaves to it.
    struct PlatformCommand {
        std::function<void()> perform;
        // Without one it can always be done.
        std::function<platform::CommandState()> state {};
    };
    using PlatformCommands = std::map<platform::Command, PlatformCommand>;

    MenuBarView(platform::MenuBar&, Gtk::ApplicationWindow&, Pictures&, PlatformCommands);
    MenuBarView(MenuBarView const&) = delete;
    MenuBarView& operator=(MenuBarView const&) = delete;

    Gtk::Widget& widget() { return m_widget; }
    // The keys belong to the application: to be called once the window is its.
    void setAccelerators(Gtk::Application&);

private:
    void perform(platform::Command, int tag);
    void addActions(platform::Menu const&);
    void addAction(platform::MenuItem const&);
    // Fills the models and boxes.
    Glib::RefPtr<Gio::Menu> makeModel();
    void addChildren();
    void showChanges();
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
    Pictures& m_pictures;
    PlatformCommands m_platformCommands;
    std::vector<Entry> m_entries;
    std::vector<MenuModel> m_models;
    // Of the menus that change, by their position.
    std::map<std::size_t, MenuBox> m_boxes;
    Gtk::PopoverMenuBar m_widget;
    ScopedConnection m_menusConnection;
    ScopedConnection m_statesConnection;
};

}
