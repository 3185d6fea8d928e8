#pragma once

#include "MainWindow/SidebarView.h"
#include "Platform/Gtk/AvatarView.h"
#include "Platform/Gtk/MenuBox.h"
#include "Support/Lifetime.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/image.h>
#include <gtkmm/popovermenu.h>

#include <memory>
#include <vector>

namespace tarn::gtk {

class AppButton;

// Draws the core's sidebar and reports clicks to it.
class SidebarView final : public Gtk::Box {
public:
    SidebarView(tarn::SidebarView&, Pictures&, int width);
    ~SidebarView() override;

private:
    void render();
    void renderProfile();
    void makeProfileMenu();
    void openProfileMenu(platform::Menu const&);

    tarn::SidebarView& m_sidebar;
    std::vector<AppButton*> m_appButtons;
    Gtk::Button m_settingsButton;
    Gtk::Button m_profileButton;
    AvatarView m_avatar;
    MenuBox m_menuBox;
    // Made when it is first opened.
    std::unique_ptr<Gtk::PopoverMenu> m_menu;
    bool m_isMenuUp { false };
    Lifetime m_lifetime;
};

}
