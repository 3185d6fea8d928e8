#include "Platform/Gtk/ProgressPanel.h"

#include <glibmm/main.h>

namespace tarn::gtk {

namespace {

constexpr unsigned pulseInterval = 100; // milliseconds

}

ProgressPanel::ProgressPanel(std::string const& text, std::function<void()> onCancel)
    : m_onCancel(std::move(onCancel))
    , m_label(text)
{
    m_window.set_title("Tarn");
    m_window.set_resizable(false);
    m_window.set_default_size(360, -1);
    m_box.set_margin(18);
    m_label.set_halign(Gtk::Align::START);
    m_cancel.set_halign(Gtk::Align::END);
    m_box.append(m_label);
    m_box.append(m_bar);
    m_box.append(m_cancel);
    m_window.set_child(m_box);
    // On a later turn: cancelling ends this object.
    auto const cancel = [this] { Glib::signal_idle().connect_once(m_lifetime.guard([this] { m_onCancel(); })); };
    m_cancel.signal_clicked().connect(cancel);
    m_window.signal_close_request().connect(
        [cancel] {
            cancel();
            return true;
        },
        false);
    // Until the size is known there is only movement.
    m_pulse = Glib::signal_timeout().connect(
        [this] {
            m_bar.pulse();
            return true;
        },
        pulseInterval);
    m_window.present();
}

ProgressPanel::~ProgressPanel()
{
    m_pulse.disconnect();
}

void ProgressPanel::setFraction(double fraction)
{
    m_pulse.disconnect();
    m_bar.set_fraction(fraction);
}

}
