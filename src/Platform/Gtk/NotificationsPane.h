#pragma once

#include "Settings/NotificationsPane.h"

#include <adwaita.h>
#include <gtkmm/box.h>

namespace tarn::gtk {

// Draws the core's pane and reports clicks to it.
class NotificationsPane final : public Gtk::Box {
public:
    NotificationsPane(tarn::NotificationsPane&, int width);
    ~NotificationsPane() override;

private:
    AdwActionRow* addStep(Gtk::Box& page, tarn::NotificationsPane::Step const&, std::function<void()> onClick);
    void render();

    tarn::NotificationsPane& m_pane;
    AdwActionRow* m_desktopRow { nullptr };
};

}
