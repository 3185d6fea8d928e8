#pragma once

#include "Platform/Gtk/Pictures.h"
#include "Platform/Menu.h"

#include <gtkmm/button.h>
#include <gtkmm/image.h>

#include <functional>
#include <string>

namespace tarn::gtk {

// A menu item with an icon or a picture, which the toolkit's own items do not draw. It looks and acts like one of them.
class MenuItemView {
public:
    // The action is a detailed name.
    MenuItemView(platform::MenuItem const&, std::string const& action, Pictures&);
    // The closure runs when the menu is on its way out, and may end the view.
    MenuItemView(platform::MenuItem const&, std::function<void()>, Pictures&);

    Gtk::Widget& widget() { return *m_button; }
    void setState(platform::CommandState const&);

private:
    MenuItemView(platform::MenuItem const&, Pictures&);

    Ref<GtkWidget> m_owned;
    Gtk::Button* m_button;
    Gtk::Image* m_check;
};

}
