#include "Platform/Gtk/Activation.h"

#include <algorithm>

namespace tarn::gtk {

namespace {

constexpr char const* tokenKey = "tarn-activation-token";

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
