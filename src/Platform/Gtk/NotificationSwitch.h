#pragma once

#include "Platform/Gtk/Ref.h"

#include <gio/gio.h>

#include <string>

namespace tarn::gtk {

// The desktop's own switch for the notifications of one application: GNOME has one. Elsewhere it counts as on.
class NotificationSwitch {
public:
    explicit NotificationSwitch(std::string const& applicationId);

    bool isOn() const;

private:
    Ref<GSettings> m_settings;
};

}
