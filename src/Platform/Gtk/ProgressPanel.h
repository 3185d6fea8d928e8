#pragma once

#include "Platform/Updater.h"
#include "Support/Lifetime.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/window.h>

namespace tarn::gtk {

// A small window of its own; it stops no other. Closing it cancels.
class ProgressPanel final : public platform::ProgressPanel {
public:
    ProgressPanel(std::string const& text, std::function<void()> onCancel);
    ~ProgressPanel() override;

    void setFraction(double) override;

private:
    std::function<void()> m_onCancel;
    Gtk::Window m_window;
    Gtk::Box m_box { Gtk::Orientation::VERTICAL, 12 };
    Gtk::Label m_label;
    Gtk::ProgressBar m_bar;
    Gtk::Button m_cancel { "_Cancel", true };
    sigc::connection m_pulse;
    Lifetime m_lifetime;
};

}
