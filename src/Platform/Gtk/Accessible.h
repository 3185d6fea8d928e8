#pragma once

#include <gtkmm/widget.h>

#include <string>

namespace tarn::gtk {

// What a screen reader calls the widget.
inline void setAccessibleLabel(Gtk::Widget& widget, std::string const& label)
{
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, label.c_str(), -1);
}

}
