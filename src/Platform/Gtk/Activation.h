#pragma once

#include "Platform/Activation.h"

#include <gtkmm/application.h>

#include <string>

namespace tarn::gtk {

class Activation final : public platform::Activation {
public:
    explicit Activation(Gtk::Application& application)
        : m_application(application)
    {
    }

    bool isActive() const override;
    // The window used last; without any on the screen the application is activated as by a second start.
    void activate() override;

    // What desktops ask for before a program may raise a window without having the keyboard. For the next present().
    static void setToken(Gtk::Application&, std::string const& token);
    static void present(Gtk::Application&, Gtk::Window&);

private:
    Gtk::Application& m_application;
};

}
