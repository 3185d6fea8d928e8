#pragma once

#include "Platform/Menu.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>

#include <functional>
#include <string>
#include <vector>

namespace tarn::gtk {

// The toolkit's form of a Menu: a model to draw, and an action for the items that run a closure. Separators become
// sections. Items with a command refer to the action that commandAction names.
class MenuModel {
public:
    // The detailed name of a command's action: "win.show-app(2)".
    using CommandAction = std::function<std::string(platform::Command, int tag)>;

    // The prefix is the name under which the caller inserts actions() into its widget.
    MenuModel(platform::Menu const&, std::string const& prefix, CommandAction const& = {});

    Glib::RefPtr<Gio::Menu> model() const { return m_model; }
    Glib::RefPtr<Gio::SimpleActionGroup> actions() const { return m_actions; }

private:
    void append(Gio::Menu&, platform::MenuItem const&, std::string const& prefix, CommandAction const&);

    Glib::RefPtr<Gio::Menu> m_model;
    Glib::RefPtr<Gio::SimpleActionGroup> m_actions;
    std::vector<std::function<void()>> m_closures;
    // Position of the checked closure among them; the items form one radio group.
    int m_checked { -1 };
};

}
