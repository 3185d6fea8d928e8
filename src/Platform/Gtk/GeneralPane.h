#pragma once

#include "Settings/GeneralPane.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/switch.h>

namespace tarn::gtk {

// Draws the core's pane and reports clicks to it.
class GeneralPane final : public Gtk::Box {
public:
    GeneralPane(tarn::GeneralPane&, int width);
    ~GeneralPane() override;

private:
    void render();

    tarn::GeneralPane& m_pane;
    Gtk::Switch m_login;
    Gtk::Label* m_error;
};

}
