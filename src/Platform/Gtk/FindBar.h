#pragma once

#include "MainWindow/FindBarController.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/searchentry.h>

namespace tarn::gtk {

// Draws a FindBarController, and tells it what the user does. The controller outlives it.
class FindBar final : public Gtk::Box {
public:
    explicit FindBar(FindBarController&);
    ~FindBar() override;

private:
    bool keyPressed(guint keyval, Gdk::ModifierType);
    void update();
    void addButton(char const* icon, char const* name, platform::FindDirection);

    FindBarController& m_controller;
    Gtk::SearchEntry m_field;
    Gtk::Label m_status;
};

}
