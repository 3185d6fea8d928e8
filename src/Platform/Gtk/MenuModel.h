#pragma once

#include "Platform/Gtk/MenuItemView.h"
#include "Platform/Menu.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>

#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace tarn::gtk {

// The toolkit's form of a Menu: a model to draw, and an action for the items that run a closure. Separators become
// sections. Items with a command refer to the action that commandAction names. Of closures, only items with an icon or
// a picture can be checked.
class MenuModel {
public:
    // The detailed name of a command's action; empty for a command that is not offered here.
    using CommandAction = std::function<std::string(platform::Command, int tag)>;

    // An item that the model has only a place for, by its identifier.
    struct Child {
        std::string id;
        std::variant<platform::Command, std::function<void()>> action;
        int tag;
        std::unique_ptr<MenuItemView> view;
    };

    // The prefix is the name under which the caller inserts actions() into its widget.
    MenuModel(platform::Menu const&, std::string prefix, Pictures&, CommandAction const& = {});

    Glib::RefPtr<Gio::Menu> model() const { return m_model; }
    Glib::RefPtr<Gio::SimpleActionGroup> actions() const { return m_actions; }
    // To be put into what draws the model.
    std::vector<Child> const& children() const { return m_children; }

private:
    void append(Gio::Menu&, platform::Menu const&, CommandAction const&);
    void append(Gio::Menu&, platform::MenuItem const&, CommandAction const&);
    std::string actionFor(platform::MenuItem const&, CommandAction const&);

    std::string m_prefix;
    Pictures& m_pictures;
    Glib::RefPtr<Gio::Menu> m_model;
    Glib::RefPtr<Gio::SimpleActionGroup> m_actions;
    std::vector<Child> m_children;
    std::vector<std::function<void()>> m_closures;
};

}
