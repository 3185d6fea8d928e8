#pragma once

#include "Platform/Gtk/GeneralPane.h"
#include "Platform/Gtk/NativeWindow.h"
#include "Platform/Gtk/NotificationsPane.h"
#include "Platform/Gtk/ProfilesPane.h"
#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/Signal.h"
#include "Platform/Gtk/WindowCommands.h"
#include "Settings/SettingsWindowController.h"

#include <gtkmm/application.h>
#include <gtkmm/headerbar.h>
#include <gtkmm/shortcutcontroller.h>

namespace tarn::gtk {

class SettingsWindow final : public platform::Window, public NativeWindow {
public:
    SettingsWindow(Gtk::Application&, SettingsWindowController&, WindowServices const&);
    ~SettingsWindow() override;

    void present() override;
    bool isVisible() const override { return m_window.is_visible(); }

    Gtk::Window& native() override { return m_window; }

private:
    // The title has a mark before the letter that chooses the page.
    void addPage(std::string_view name, std::string const& title, std::string_view iconName, Gtk::Widget&);
    void addKey(guint key, Gdk::ModifierType, std::function<void()> const& action);
    void close();

    Gtk::Application& m_application;
    SettingsWindowController& m_settings;
    Gtk::Window m_window;
    Gtk::HeaderBar m_headerBar;
    Glib::RefPtr<Gtk::ShortcutController> m_keys { Gtk::ShortcutController::create() };
    Ref<AdwViewStack> m_stack;
    ProfilesPane m_profiles;
    NotificationsPane m_notifications;
    GeneralPane m_general;
    Signal<void(GParamSpec*)> m_onTab;
};

}
