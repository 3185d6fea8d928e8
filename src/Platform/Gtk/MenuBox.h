#pragma once

#include "Platform/Gtk/MenuItemView.h"
#include "Platform/Menu.h"

#include <giomm/menu.h>
#include <gtkmm/box.h>

#include <memory>
#include <vector>

namespace tarn::gtk {

// The entries of a menu that changes while it is in use, as the one child of a menu of the toolkit's: those keep what
// they drew before for good, and point at items that are gone.
class MenuBox {
public:
    explicit MenuBox(Pictures&);
    MenuBox(MenuBox const&) = delete;
    MenuBox& operator=(MenuBox const&) = delete;

    // The model of a menu that has only a place for the box, by this identifier.
    static Glib::RefPtr<Gio::Menu> model(std::string const& id);

    Gtk::Widget& widget() { return m_box; }
    // Items that run a closure, and separators; others are left out. May be called by one of the closures.
    void show(platform::Menu const&);

private:
    struct Row {
        // Of an item.
        std::unique_ptr<MenuItemView> view {};
        // In the box; none for what is left out.
        Gtk::Widget* widget { nullptr };
    };

    Row makeRow(std::size_t index);
    void run(std::size_t index);

    Pictures& m_pictures;
    std::vector<platform::MenuEntry> m_entries;
    std::vector<Row> m_rows;
    Gtk::Box m_box { Gtk::Orientation::VERTICAL };
};

}
