#include "Platform/Gtk/Activation.h"

#include <glibmm/main.h>

#include <algorithm>
#include <utility>

namespace tarn::gtk {

namespace {

constexpr char const* tokenKey = "tarn-activation-token";

}

Activation::Activation(Gtk::Application& application)
    : m_application(application)
    , m_added(application.signal_window_added().connect([this](Gtk::Window* window) { watch(*window); }))
    , m_removed(application.signal_window_removed().connect([this](Gtk::Window* window) { m_windows.erase(window); }))
{
}

void Activation::watch(Gtk::Window& window)
{
    m_windows[&window] = window.property_is_active().signal_changed().connect([this] {
        // From one window to another, for a moment none is active.
        Glib::signal_idle().connect_once(m_lifetime.guard([this] { activeChanged(); }));
    });
}

void Activation::activeChanged()
{
    bool const active = isActive();
    if (active && !std::exchange(m_wasActive, active))
        didBecomeActive.emit();
    m_wasActive = active;
}

bool Activation::isActive() const
{
    return std::ranges::any_of(m_application.get_windows(), [](auto* window) { return window->is_active(); });
}

void Activation::activate()
{
    auto* const window = m_application.get_active_window();
    if (window && window->is_visible())
        present(m_application, *window);
    else
        m_application.activate();
}

void Activation::setToken(Gtk::Application& application, std::string const& token)
{
    g_object_set_data_full(G_OBJECT(application.gobj()), tokenKey, g_strdup(token.c_str()), g_free);
}

void Activation::present(Gtk::Application& application, Gtk::Window& window)
{
    auto* const token = static_cast<char*>(g_object_steal_data(G_OBJECT(application.gobj()), tokenKey));
    if (token)
        window.set_startup_id(token);
    g_free(token);
    window.present();
}

}
