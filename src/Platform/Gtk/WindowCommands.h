#pragma once

#include "Platform/Gtk/EditingCommands.h"
#include "Platform/Gtk/MenuBarView.h"
#include "Platform/Gtk/Pictures.h"
#include "Platform/Gtk/Spelling.h"

#include <gtkmm/applicationwindow.h>

#include <functional>

namespace tarn::gtk {

// What all windows share; it outlives them.
struct WindowServices {
    Pictures& pictures;
    Spelling& spelling;
    std::function<void()> quit;
};

// What every window with a page does by itself: editing, spelling, its own size.
MenuBarView::PlatformCommands windowCommands(Gtk::ApplicationWindow&, EditingCommands&, WindowServices const&);

}
