#pragma once

#include "Platform/Gtk/Pictures.h"
#include "Settings/ProfilesPane.h"
#include "Support/Lifetime.h"

#include <adwaita.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>

#include <memory>
#include <vector>

namespace tarn::gtk {

class ProfileEditor;
class ProfileRowView;

// Draws the core's pane and its editor, and reports clicks to it.
class ProfilesPane final : public Gtk::Box {
public:
    // The editor hangs on the window.
    ProfilesPane(tarn::ProfilesPane&, Pictures&, Gtk::Window&, int width);
    ~ProfilesPane() override;

private:
    void render();
    void renderRows(std::vector<ProfileRow> const&);
    void renderEditor();

    tarn::ProfilesPane& m_pane;
    Pictures& m_pictures;
    Gtk::Window& m_window;
    AdwPreferencesGroup* m_group;
    Gtk::Button m_newButton;
    std::vector<std::unique_ptr<ProfileRowView>> m_rows;
    std::shared_ptr<ProfileEditor> m_editor;
    Lifetime m_lifetime;
};

}
