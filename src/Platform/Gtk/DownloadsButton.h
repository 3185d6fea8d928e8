#pragma once

#include "Downloads/DownloadList.h"
#include "Platform/Gtk/DownloadRow.h"
#include "Support/ScopedConnection.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/popover.h>
#include <gtkmm/progressbar.h>

#include <vector>

namespace tarn::gtk {

// The downloads in the title bar: how many run and how far they are together; a click lists them.
class DownloadsButton final : public Gtk::MenuButton {
public:
    // The list outlives the button.
    explicit DownloadsButton(DownloadList&);
    ~DownloadsButton() override;

private:
    void render();
    void renderRows();
    void pulseWhileUnmeasured(bool);

    DownloadList& m_list;
    Gtk::Box m_face;
    Gtk::Label m_count;
    Gtk::ProgressBar m_progress;
    Gtk::Popover m_popover;
    Gtk::Box m_rows;
    Gtk::Button m_clear;
    // In the order of the list; owned by m_rows.
    std::vector<DownloadRow*> m_shown;
    bool m_pulses { false };
    ScopedConnection m_pulse;
};

}
