#include "Platform/Gtk/MenuItemView.h"

#include "Platform/Gtk/Accessible.h"
#include "Platform/Gtk/AvatarView.h"
#include "Platform/Gtk/KeyLabels.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>

namespace tarn::gtk {

namespace {

constexpr int spacing = 8;
constexpr int iconSize = 18;
constexpr int longestTitle = 40; // characters

bool hasPicture(platform::MenuItem const& item)
{
    return item.avatar || !item.icon.empty();
}

Ref<GtkWidget> makeButton(platform::MenuItem const& item)
{
    auto const role = hasPicture(item) ? GTK_ACCESSIBLE_ROLE_MENU_ITEM_RADIO : GTK_ACCESSIBLE_ROLE_MENU_ITEM;
    // With the style of the toolkit's own items.
    return sink(GTK_WIDGET(g_object_new(GTK_TYPE_BUTTON, "css-name", "modelbutton", "accessible-role", role, nullptr)));
}

Gtk::Widget& makeImage(platform::MenuItem const& item, Pictures& pictures)
{
    if (item.avatar) {
        auto* const avatar = Gtk::make_managed<AvatarView>(pictures);
        avatar->show(*item.avatar);
        return *avatar;
    }
    auto* const icon = Gtk::make_managed<Gtk::Image>();
    icon->set_from_icon_name(item.icon);
    icon->set_pixel_size(iconSize);
    return *icon;
}

void putAway(Gtk::Button& button)
{
    if (auto* const popover = gtk_widget_get_ancestor(GTK_WIDGET(button.gobj()), GTK_TYPE_POPOVER))
        gtk_popover_popdown(GTK_POPOVER(popover));
}

}

MenuItemView::MenuItemView(platform::MenuItem const& item, Pictures& pictures)
    : m_owned(makeButton(item))
    , m_button(Glib::wrap(GTK_BUTTON(m_owned.get())))
    , m_check(Gtk::make_managed<Gtk::Image>())
{
    auto* const row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, spacing);
    m_check->set_from_icon_name("object-select-symbolic");
    if (hasPicture(item)) {
        row->append(*m_check);
        row->append(makeImage(item, pictures));
    }
    auto* const title = Gtk::make_managed<Gtk::Label>(item.title);
    title->set_xalign(0);
    title->set_hexpand();
    title->set_ellipsize(Pango::EllipsizeMode::END);
    title->set_max_width_chars(longestTitle);
    row->append(*title);
    if (item.key) {
        auto* const key = Glib::wrap(GTK_LABEL(g_object_new(GTK_TYPE_LABEL, "css-name", "accelerator", nullptr)));
        key->set_text(keyLabel(*item.key));
        row->append(*key);
    }
    m_button->set_child(*row);
    m_button->add_css_class("tarn-menu-item");
    setAccessibleLabel(*m_button, item.title);
    setState({ .checked = item.checked });
}

MenuItemView::MenuItemView(platform::MenuItem const& item, std::string const& action, Pictures& pictures)
    : MenuItemView(item, pictures)
{
    gtk_actionable_set_detailed_action_name(GTK_ACTIONABLE(m_button->gobj()), action.c_str());
    m_button->signal_clicked().connect([button = m_button] { putAway(*button); });
}

MenuItemView::MenuItemView(platform::MenuItem const& item, std::function<void()> closure, Pictures& pictures)
    : MenuItemView(item, pictures)
{
    m_button->signal_clicked().connect([button = m_button, closure = std::move(closure)] {
        putAway(*button);
        // A copy: it may end the button, and this with it.
        auto const run = closure;
        run();
    });
}

void MenuItemView::setState(platform::CommandState const& state)
{
    m_button->set_visible(!state.hidden);
    m_check->set_opacity(state.checked ? 1 : 0);
    auto const checked = state.checked ? GTK_ACCESSIBLE_TRISTATE_TRUE : GTK_ACCESSIBLE_TRISTATE_FALSE;
    gtk_accessible_update_state(GTK_ACCESSIBLE(m_button->gobj()), GTK_ACCESSIBLE_STATE_CHECKED, checked, -1);
}

}
