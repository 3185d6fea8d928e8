#pragma once

#include "Platform/WebView.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>

namespace tarn::gtk {

// Draws a PageNotice.
class NoticeView final : public Gtk::Box {
public:
    explicit NoticeView(platform::PageNotice const&);

    void focusButton() { m_button->grab_focus(); }

private:
    Gtk::Button* m_button;
};

}
