#include "Platform/Gtk/AvatarView.h"

#include <adwaita.h>

namespace tarn::gtk {

AvatarView::AvatarView(Pictures& pictures, int symbol)
    : m_pictures(pictures)
{
    m_symbol.set_from_icon_name("tarn-profile-symbolic");
    m_symbol.set_pixel_size(symbol);
    m_symbol.set_expand();
    set_valign(Gtk::Align::CENTER);
    // The symbol is centred; that is no reason to be wide.
    set_hexpand(false);
    set_vexpand(false);
    set_can_target(false);
    gtk_accessible_update_state(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_STATE_HIDDEN, TRUE, -1);
    property_scale_factor().signal_changed().connect([this] { load(); });
    append(m_symbol);
}

void AvatarView::show(platform::Avatar const& avatar)
{
    if (avatar == m_avatar)
        return;
    m_avatar = avatar;
    set_size_request(avatar.size, avatar.size);
    put(m_symbol);
    load();
}

void AvatarView::load()
{
    if (!m_avatar.image)
        return;
    m_pictures.load(*m_avatar.image, m_avatar.size * get_scale_factor(),
        m_lifetime.guard([this, wanted = m_avatar](Ref<GdkTexture> const& texture) {
            if (wanted != m_avatar || !texture)
                return;
            auto* const picture = adw_avatar_new(m_avatar.size, nullptr, FALSE);
            adw_avatar_set_custom_image(ADW_AVATAR(picture), GDK_PAINTABLE(texture.get()));
            put(*Glib::wrap(picture));
        }));
}

void AvatarView::put(Gtk::Widget& widget)
{
    while (auto* const child = get_first_child())
        remove(*child);
    append(widget);
}

}
