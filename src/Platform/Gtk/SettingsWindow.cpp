#include "Platform/Gtk/SettingsWindow.h"

#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/Preferences.h"

#include <gtkmm/scrolledwindow.h>
#include <gtkmm/shortcut.h>

namespace tarn::gtk {

namespace {

// A longer list scrolls.
constexpr int mostHeight = 700;

}

SettingsWindow::SettingsWindow(
    Gtk::Application& application, SettingsWindowController& settings, WindowServices const& services)
    : m_application(application)
    , m_settings(settings)
    , m_stack(sink(ADW_VIEW_STACK(adw_view_stack_new())))
    , m_profiles(settings.profilesPane(), services.pictures, m_window, SettingsWindowController::paneWidth)
    , m_notifications(settings.notificationsPane(), SettingsWindowController::paneWidth)
    , m_general(settings.generalPane(), SettingsWindowController::paneWidth)
    , m_onTab(m_stack.get(), "notify::visible-child-name", [this](GParamSpec*) {
        auto const* const name = adw_view_stack_get_visible_child_name(m_stack.get());
        if (auto const tab = SettingsModel::fromRawValue(name ? name : ""))
            m_settings.model().setTab(*tab);
    })
{
    // The window is as high as the pane that is shown.
    adw_view_stack_set_vhomogeneous(m_stack.get(), FALSE);
    auto const addTab = [this](SettingsModel::Tab tab, char letter, Gtk::Widget& pane) {
        auto const appearance = SettingsWindowController::appearance(tab);
        addPage(SettingsModel::rawValue(tab), marked(appearance.title, letter), appearance.iconName, pane);
    };
    addTab(SettingsModel::Tab::profiles, 'P', m_profiles);
    addTab(SettingsModel::Tab::notifications, 'o', m_notifications);
    addPage("general", marked(tarn::GeneralPane::title, 'G'), tarn::GeneralPane::iconName, m_general);

    auto* const switcher = ADW_VIEW_SWITCHER(adw_view_switcher_new());
    adw_view_switcher_set_stack(switcher, m_stack.get());
    adw_view_switcher_set_policy(switcher, ADW_VIEW_SWITCHER_POLICY_WIDE);
    m_headerBar.set_title_widget(*Glib::wrap(GTK_WIDGET(switcher)));

    m_headerBar.set_decoration_layout(":close");

    m_window.set_title(std::string(SettingsWindowController::title));
    m_window.set_titlebar(m_headerBar);
    m_window.set_child(*Glib::wrap(GTK_WIDGET(m_stack.get())));
    m_window.set_resizable(false);
    m_window.signal_close_request().connect(
        [this] {
            close();
            return true;
        },
        false);
    addKey(GDK_KEY_Escape, {}, [this] { close(); });
    addKey(GDK_KEY_w, Gdk::ModifierType::CONTROL_MASK, [this] { close(); });
    addKey(GDK_KEY_q, Gdk::ModifierType::CONTROL_MASK, services.quit);
    m_window.add_controller(m_keys);

    auto const select = [this] {
        adw_view_stack_set_visible_child_name(
            m_stack.get(), std::string(SettingsModel::rawValue(m_settings.model().tab())).c_str());
    };
    m_settings.model().onChange = select;
    m_settings.onSelect = select;
    select();
}

SettingsWindow::~SettingsWindow()
{
    m_settings.model().onChange = nullptr;
    m_settings.onSelect = nullptr;
}

void SettingsWindow::addPage(
    std::string_view name, std::string const& title, std::string_view iconName, Gtk::Widget& pane)
{
    auto* const scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_propagate_natural_height();
    scroller->set_max_content_height(mostHeight);
    scroller->set_child(pane);
    auto* const page = adw_view_stack_add_titled(
        m_stack.get(), GTK_WIDGET(scroller->gobj()), std::string(name).c_str(), title.c_str());
    adw_view_stack_page_set_use_underline(page, TRUE);
    adw_view_stack_page_set_icon_name(page, std::string(iconName).c_str());
}

void SettingsWindow::addKey(guint key, Gdk::ModifierType modifiers, std::function<void()> const& action)
{
    m_keys->add_shortcut(Gtk::Shortcut::create(Gtk::KeyvalTrigger::create(key, modifiers),
        Gtk::CallbackAction::create([action](Gtk::Widget&, Glib::VariantBase const&) {
            action();
            return true;
        })));
}

void SettingsWindow::present()
{
    Activation::present(m_application, m_window);
}

void SettingsWindow::close()
{
    // A sheet is to be answered first.
    if (!m_settings.profilesPane().editor())
        m_window.set_visible(false);
}

}
