#pragma once

#include "Platform/Activation.h"
#include "Support/Lifetime.h"
#include "Support/ScopedConnection.h"

#include <gtkmm/application.h>

#include <array>
#include <map>
#include <string>

namespace tarn::gtk {

class Activation final : public platform::Activation {
public:
    // To be made before the windows.
    explicit Activation(Gtk::Application&);

    bool isActive() const override;
    // The window used last; without any on the screen the application is activated as by a second start.
    void activate() override;

    // What desktops ask for before a program may raise a window without having the keyboard. For the next present().
    static void setToken(Gtk::Application&, std::string const& token);
    static void present(Gtk::Application&, Gtk::Window&);
    // Makes the window one of the application's until it is destroyed; present() does so too.
    static void add(Gtk::Application&, Gtk::Window&);

private:
    void watch(Gtk::Window&);
    void activeChanged();

    Gtk::Application& m_application;
    std::map<Gtk::Window*, std::array<ScopedConnection, 2>> m_windows;
    ScopedConnection m_added;
    ScopedConnection m_removed;
    bool m_wasActive { false };
    Lifetime m_lifetime;
};

}
