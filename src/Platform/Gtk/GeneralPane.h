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
    static void addRow(Gtk::Box& page, std::string const& title, Gtk::Switch&, std::string_view note);
    void render();

    tarn::GeneralPane& m_pane;
    Gtk::Switch m_login;
    Gtk::Switch m_safeRendering;
    Gtk::Label* m_error;
};

}
