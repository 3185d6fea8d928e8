#pragma once

#include "Platform/Avatar.h"
#include "Platform/Gtk/Pictures.h"
#include "Support/Lifetime.h"

#include <gtkmm/box.h>
#include <gtkmm/image.h>

namespace tarn::gtk {

// Draws an Avatar. To a screen reader it is nothing: whose it is stands beside it.
class AvatarView final : public Gtk::Box {
public:
    static constexpr int symbolSize = 18;

    // The pictures outlive the view; the size of the symbol is in points.
    explicit AvatarView(Pictures&, int symbol = symbolSize);

    void show(platform::Avatar const&);

private:
    void load();
    void put(Gtk::Widget&);

    Pictures& m_pictures;
    platform::Avatar m_avatar;
    Gtk::Image m_symbol;
    Lifetime m_lifetime;
};

}
