#pragma once

#include "Platform/Gtk/MenuItemView.h"
#include "Platform/Menu.h"

#include <giomm/menu.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarn::gtk {

// The toolkit's form of a Menu that stays as it is: its items have commands, and refer to the actions that
// commandAction names. Separators become sections.
class MenuModel {
public:
    // The detailed name of a command's action; empty for a command that is not offered here.
    using CommandAction = std::function<std::string(platform::Command, int tag)>;

    // An item that the model has only a place for, by its identifier.
    struct Child {
        std::string id;
        platform::Command command;
        int tag;
        std::unique_ptr<MenuItemView> view;
    };

    // The prefix sets its children apart from those of other menus.
    MenuModel(platform::Menu const&, std::string prefix, Pictures&, CommandAction const&);

    Glib::RefPtr<Gio::Menu> model() const { return m_model; }
    // To be put into what draws the model.
    std::vector<Child> const& children() const { return m_children; }

private:
    void append(Gio::Menu&, platform::Menu const&, CommandAction const&);
    void append(Gio::Menu&, platform::MenuItem const&, CommandAction const&);

    std::string m_prefix;
    Pictures& m_pictures;
    Glib::RefPtr<Gio::Menu> m_model;
    std::vector<Child> m_children;
};

}
