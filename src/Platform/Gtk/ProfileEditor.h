#pragma once

#include "Platform/Gtk/AvatarView.h"
#include "Settings/ProfileEditor.h"

#include <gtkmm/button.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/headerbar.h>
#include <gtkmm/label.h>
#include <gtkmm/window.h>

namespace tarn::gtk {

// Draws the core's editor as a sheet on a window, and reports to it what the user does.
class ProfileEditor {
public:
    ProfileEditor(tarn::ProfileEditor&, Pictures&, Gtk::Window& parent);
    ProfileEditor(ProfileEditor const&) = delete;
    ProfileEditor& operator=(ProfileEditor const&) = delete;

    // The core's editor may end after this.
    void close();

private:
    Gtk::Widget& makeNameRow();
    Gtk::Widget& makePictureRow();
    Gtk::Widget& makeApps();
    void addButtons();
    void addKeys();
    void render();

    tarn::ProfileEditor& m_editor;
    Gtk::Window m_window;
    Gtk::HeaderBar m_headerBar;
    Gtk::Button m_cancel;
    Gtk::Button m_confirm;
    Gtk::Entry m_name;
    AvatarView m_picture;
    Gtk::Button m_choose;
    Gtk::Button m_remove;
    Gtk::Label* m_error;
};

}
