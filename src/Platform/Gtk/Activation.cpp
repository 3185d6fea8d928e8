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
    auto const changed = [this] {
        // From one window to another, for a moment none is active.
        Glib::signal_idle().connect_once(m_lifetime.guard([this] { activeChanged(); }));
    };
    m_windows[&window] = { window.property_is_active().signal_changed().connect(changed),
        window.property_visible().signal_changed().connect(changed) };
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
    // A hidden window may call itself active still.
    return std::ranges::any_of(
        m_application.get_windows(), [](auto* window) { return window->is_visible() && window->is_active(); });
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
    add(application, window);
    window.present();
}

void Activation::add(Gtk::Application& application, Gtk::Window& window)
{
    if (window.get_application())
        return;
    // The binding takes a window that is hidden out of its application, and when it comes back its title bar and menus
    // do not find their actions again. What it hung on the signal, at the construction, is taken off.
    auto const signal = g_signal_lookup("hide", GTK_TYPE_WIDGET);
    if (auto const handler
        = g_signal_handler_find(window.gobj(), G_SIGNAL_MATCH_ID, signal, 0, nullptr, nullptr, nullptr))
        g_signal_handler_disconnect(window.gobj(), handler);
    application.add_window(window);
}

}
