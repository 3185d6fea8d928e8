#include "Platform/Gtk/FindBar.h"

#include <gtkmm/button.h>
#include <gtkmm/eventcontrollerkey.h>

namespace tarn::gtk {

namespace {

constexpr int spacing = 6;
constexpr int verticalInset = 4;
constexpr int horizontalInset = 10;
constexpr int minimumFieldWidth = 220;
constexpr int minimumHeight = 34;

}

FindBar::FindBar(FindBarController& controller)
    : Gtk::Box(Gtk::Orientation::HORIZONTAL, spacing)
    , m_controller(controller)
{
    add_css_class("tarn-find-bar");
    set_size_request(-1, minimumHeight);

    m_field.property_placeholder_text() = FindBarController::placeholder;
    m_field.set_size_request(minimumFieldWidth, -1);
    m_field.set_hexpand();
    m_field.set_margin_start(horizontalInset);
    // On every change: the field's own signal waits for a pause.
    m_field.signal_changed().connect([this] { m_controller.setText(m_field.get_text()); });
    m_field.signal_activate().connect([this] { m_controller.find(platform::FindDirection::forward); });
    // The field takes Escape for itself.
    m_field.signal_stop_search().connect([this] { m_controller.hide(); });
    append(m_field);

    m_status.add_css_class("dim-label");
    m_status.add_css_class("caption");
    append(m_status);

    addButton("go-up-symbolic", "Previous", platform::FindDirection::backward);
    addButton("go-down-symbolic", "Next", platform::FindDirection::forward);
    auto* const done = Gtk::make_managed<Gtk::Button>("Done");
    done->add_css_class("flat");
    done->set_margin_end(horizontalInset);
    done->signal_clicked().connect([this] { m_controller.hide(); });
    append(*done);
    for (auto* child = get_first_child(); child; child = child->get_next_sibling()) {
        child->set_margin_top(verticalInset);
        child->set_margin_bottom(verticalInset);
    }

    // After the field itself, whose input method may want the keys.
    auto const keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint keyval, guint, Gdk::ModifierType state) { return keyPressed(keyval, state); }, false);
    add_controller(keys);

    m_controller.onChange = [this] { update(); };
    m_controller.onFocusField = [this] {
        m_field.grab_focus();
        m_field.select_region(0, -1);
    };
    update();
}

FindBar::~FindBar()
{
    m_controller.onChange = nullptr;
    m_controller.onFocusField = nullptr;
}

void FindBar::addButton(char const* icon, char const* name, platform::FindDirection direction)
{
    auto* const button = Gtk::make_managed<Gtk::Button>();
    button->set_icon_name(icon);
    button->set_tooltip_text(name);
    button->add_css_class("flat");
    // Typing still goes to the field.
    button->set_focus_on_click(false);
    gtk_accessible_update_property(GTK_ACCESSIBLE(button->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, name, -1);
    button->signal_clicked().connect([this, direction] { m_controller.find(direction); });
    append(*button);
}

bool FindBar::keyPressed(guint keyval, Gdk::ModifierType state)
{
    bool const isReturn = keyval == GDK_KEY_Return || keyval == GDK_KEY_KP_Enter || keyval == GDK_KEY_ISO_Enter;
    if (isReturn && (state & Gdk::ModifierType::SHIFT_MASK) != Gdk::ModifierType {})
        m_controller.find(platform::FindDirection::backward);
    else if (keyval == GDK_KEY_Escape)
        m_controller.hide();
    else
        return false;
    return true;
}

void FindBar::update()
{
    m_status.set_text(m_controller.status());
    set_visible(m_controller.isVisible());
}

}
