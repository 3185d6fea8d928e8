#include "Platform/Gtk/ProfileEditor.h"

#include "Platform/Gtk/Panels.h"
#include "Platform/Gtk/Preferences.h"

#include <gtkmm/image.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/shortcut.h>
#include <gtkmm/shortcutcontroller.h>

namespace tarn::gtk {

namespace {

constexpr int width = 460;
// For small screens; else everything is seen at once.
constexpr int mostHeight = 680;

std::string text(std::string_view view)
{
    return std::string(view);
}

}

ProfileEditor::ProfileEditor(tarn::ProfileEditor& editor, Pictures& pictures, Gtk::Window& parent)
    : m_editor(editor)
    , m_picture(pictures)
    , m_error(makeText({}))
{
    g_object_set(m_window.gobj(), "accessible-role", GTK_ACCESSIBLE_ROLE_DIALOG, nullptr);
    auto* const page = makePage(width);
    page->append(makeNameRow());
    page->append(makePictureRow());
    page->append(makeApps());
    page->append(*makeFootnote(tarn::ProfileEditor::appsNote));
    m_error->add_css_class("error");
    page->append(*m_error);

    auto* const scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_propagate_natural_height();
    scroller->set_max_content_height(mostHeight);
    scroller->set_child(*page);

    addButtons();
    addKeys();
    m_window.set_title(editor.draft().isNew ? "New Profile" : "Edit Profile");
    m_window.set_titlebar(m_headerBar);
    m_window.set_child(*scroller);
    m_window.set_resizable(false);
    m_window.set_default_widget(m_confirm);
    m_window.signal_close_request().connect(
        [this] {
            m_editor.cancel();
            return true;
        },
        false);
    makeSheet(m_window.gobj(), parent);

    m_editor.onChange = [this] { render(); };
    render();
    m_name.grab_focus();
    m_window.present();
}

void ProfileEditor::close()
{
    m_editor.onChange = nullptr;
    m_window.set_visible(false);
}

Gtk::Widget& ProfileEditor::makeNameRow()
{
    auto* const row = makeRow(marked(tarn::ProfileEditor::nameTitle, 'N'), Mnemonic::yes);
    m_name.set_text(m_editor.draft().name);
    m_name.set_placeholder_text(text(tarn::ProfileEditor::namePrompt));
    m_name.set_valign(Gtk::Align::CENTER);
    m_name.set_hexpand();
    m_name.set_activates_default();
    m_name.signal_changed().connect([this] { m_editor.setName(m_name.get_text()); });
    adw_action_row_add_suffix(row, GTK_WIDGET(m_name.gobj()));
    adw_action_row_set_activatable_widget(row, GTK_WIDGET(m_name.gobj()));
    auto* const group = makeGroup();
    adw_preferences_group_add(group, GTK_WIDGET(row));
    return *Glib::wrap(GTK_WIDGET(group));
}

Gtk::Widget& ProfileEditor::makePictureRow()
{
    auto* const row = makeRow(text(tarn::ProfileEditor::pictureTitle));
    setTitle(m_choose, tarn::ProfileEditor::chooseTitle, 'h');
    setTitle(m_remove, tarn::ProfileEditor::removeTitle, 'R');
    m_choose.signal_clicked().connect([this] { m_editor.choosePicture(); });
    m_remove.signal_clicked().connect([this] { m_editor.removePicture(); });
    for (auto* const widget : { static_cast<Gtk::Widget*>(&m_picture), static_cast<Gtk::Widget*>(&m_choose),
             static_cast<Gtk::Widget*>(&m_remove) }) {
        widget->set_valign(Gtk::Align::CENTER);
        adw_action_row_add_suffix(row, widget->gobj());
    }
    auto* const group = makeGroup();
    adw_preferences_group_add(group, GTK_WIDGET(row));
    return *Glib::wrap(GTK_WIDGET(group));
}

Gtk::Widget& ProfileEditor::makeApps()
{
    auto* const group = makeGroup();
    adw_preferences_group_set_title(group, text(tarn::ProfileEditor::appsTitle).c_str());
    for (auto const app : GoogleApp::allCases) {
        auto* const row = makeRow(text(app.title()));
        auto* const icon = Gtk::make_managed<Gtk::Image>();
        icon->set_from_icon_name(text(app.iconName()));
        adw_action_row_add_prefix(row, GTK_WIDGET(icon->gobj()));
        auto* const toggle = Gtk::make_managed<Gtk::CheckButton>();
        toggle->set_active(m_editor.draft().enabledApps.contains(app));
        toggle->set_valign(Gtk::Align::CENTER);
        toggle->signal_toggled().connect([this, app, toggle] { m_editor.setEnabled(app, toggle->get_active()); });
        adw_action_row_add_suffix(row, GTK_WIDGET(toggle->gobj()));
        adw_action_row_set_activatable_widget(row, GTK_WIDGET(toggle->gobj()));
        adw_preferences_group_add(group, GTK_WIDGET(row));
    }
    return *Glib::wrap(GTK_WIDGET(group));
}

void ProfileEditor::addButtons()
{
    setTitle(m_cancel, tarn::ProfileEditor::cancelTitle, 'C');
    setTitle(m_confirm, m_editor.confirmTitle(), m_editor.draft().isNew ? 't' : 'S');
    m_cancel.signal_clicked().connect([this] { m_editor.cancel(); });
    m_confirm.signal_clicked().connect([this] { m_editor.save(); });
    m_confirm.add_css_class("suggested-action");
    m_headerBar.set_show_title_buttons(false);
    m_headerBar.pack_start(m_cancel);
    m_headerBar.pack_end(m_confirm);
}

void ProfileEditor::addKeys()
{
    auto const keys = Gtk::ShortcutController::create();
    keys->add_shortcut(Gtk::Shortcut::create(Gtk::KeyvalTrigger::create(GDK_KEY_Escape),
        Gtk::CallbackAction::create([this](Gtk::Widget&, Glib::VariantBase const&) {
            m_editor.cancel();
            return true;
        })));
    m_window.add_controller(keys);
}

void ProfileEditor::render()
{
    m_picture.show(m_editor.picture());
    bool const hadFocus = m_remove.has_focus();
    m_remove.set_visible(m_editor.draft().avatarFile.has_value());
    if (hadFocus && !m_remove.get_visible())
        m_choose.grab_focus();
    m_error->set_visible(m_editor.error().has_value());
    m_error->set_text(m_editor.error().value_or(""));
    m_confirm.set_sensitive(m_editor.canConfirm());
}

}
