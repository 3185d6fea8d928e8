#pragma once

#include "Downloads/DownloadList.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/progressbar.h>

namespace tarn::gtk {

// One download in the list below the title bar: its name, how far it is, and what can be done with it.
class DownloadRow final : public Gtk::Box {
public:
    // The list outlives the row.
    DownloadRow(DownloadList&, DownloadItem const&);

    std::uint64_t id() const { return m_id; }
    void render(DownloadItem const&);
    // One step of a bar that has no measure.
    void pulse();

private:
    std::uint64_t m_id;
    bool m_isMeasured { true };
    Gtk::Image m_icon;
    Gtk::Label m_name;
    Gtk::ProgressBar m_progress;
    Gtk::Label m_status;
    Gtk::Button m_cancel;
    Gtk::Button m_open;
    Gtk::Button m_reveal;
};

}
