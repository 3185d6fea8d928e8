#include "Platform/Gtk/ProfilesPane.h"

#include "Platform/Gtk/Accessible.h"
#include "Platform/Gtk/AvatarView.h"
#include "Platform/Gtk/PlatformText.h"
#include "Platform/Gtk/Preferences.h"
#include "Platform/Gtk/ProfileEditor.h"

#include <glibmm/main.h>

#include <algorithm>

namespace tarn::gtk {

// One profile in the list. It stays while its profile does, so that the keyboard keeps its place.
class ProfileRowView {
public:
    ProfileRowView(tarn::ProfilesPane& pane, Pictures& pictures, Uuid const& id)
        : m_id(id)
        , m_row(makeRow({}))
        , m_avatar(Gtk::make_managed<AvatarView>(pictures))
        , m_active(Gtk::make_managed<Gtk::Label>(std::string(tarn::ProfilesPane::activeTitle)))
        , m_switch(addButton(std::string(tarn::ProfilesPane::switchTitle), [&pane, id] { pane.switchTo(id); }))
        , m_edit(addButton(std::string(tarn::ProfilesPane::editTitle), [&pane, id] { pane.edit(id); }))
        , m_delete(addButton({}, [&pane, id] { pane.askToDelete(id); }))
    {
        adw_action_row_set_title_lines(m_row, 1);
        adw_action_row_add_prefix(m_row, GTK_WIDGET(m_avatar->gobj()));
        m_active->add_css_class("caption");
        m_active->add_css_class("dim-label");
        m_delete->set_icon_name("user-trash-symbolic");
        m_delete->add_css_class("flat");
        m_delete->add_css_class("error");
        m_delete->set_tooltip_text(std::string(tarn::ProfilesPane::deleteHelp));
        setAccessibleLabel(*m_delete, std::string(tarn::ProfilesPane::deleteHelp));
        for (auto* const widget : { static_cast<Gtk::Widget*>(m_active), static_cast<Gtk::Widget*>(m_switch),
                 static_cast<Gtk::Widget*>(m_edit), static_cast<Gtk::Widget*>(m_delete) })
            adw_action_row_add_suffix(m_row, widget->gobj());
    }

    Uuid const& id() const { return m_id; }
    GtkWidget* widget() const { return GTK_WIDGET(m_row); }

    void render(ProfileRow const& row)
    {
        adw_preferences_row_set_title(ADW_PREFERENCES_ROW(m_row), row.name.c_str());
        m_avatar->show(row.picture);
        bool const hadFocus = m_switch->has_focus();
        m_active->set_visible(row.isActive);
        m_switch->set_visible(!row.isActive);
        if (hadFocus && row.isActive)
            m_edit->grab_focus();
        m_delete->set_visible(row.canBeDeleted);
        // Whose button it is, for those who do not see the row.
        for (auto* const button : { m_switch, m_edit, m_delete })
            gtk_accessible_update_property(
                GTK_ACCESSIBLE(button->gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, row.name.c_str(), -1);
    }

private:
    static Gtk::Button* addButton(std::string const& title, std::function<void()> onClick)
    {
        auto* const button = title.empty() ? Gtk::make_managed<Gtk::Button>() : Gtk::make_managed<Gtk::Button>(title);
        button->set_valign(Gtk::Align::CENTER);
        button->signal_clicked().connect(std::move(onClick));
        return button;
    }

    Uuid m_id;
    AdwActionRow* m_row;
    AvatarView* m_avatar;
    Gtk::Label* m_active;
    Gtk::Button* m_switch;
    Gtk::Button* m_edit;
    Gtk::Button* m_delete;
};

ProfilesPane::ProfilesPane(tarn::ProfilesPane& pane, Pictures& pictures, Gtk::Window& window, int width)
    : m_pane(pane)
    , m_pictures(pictures)
    , m_window(window)
    , m_group(makeGroup())
{
    auto* const page = makePage(width);
    page->append(*Glib::wrap(GTK_WIDGET(m_group)));
    page->append(*makeFootnote(platformText(tarn::ProfilesPane::footer)));
    setTitle(m_newButton, tarn::ProfilesPane::newTitle, 'N');
    m_newButton.set_halign(Gtk::Align::END);
    m_newButton.signal_clicked().connect([this] { m_pane.newProfile(); });
    page->append(m_newButton);
    append(*page);

    m_pane.onChange = [this] { render(); };
    render();
}

ProfilesPane::~ProfilesPane()
{
    m_pane.onChange = nullptr;
}

void ProfilesPane::render()
{
    renderRows(m_pane.rows());
    renderEditor();
}

void ProfilesPane::renderRows(std::vector<ProfileRow> const& rows)
{
    std::erase_if(m_rows, [&](auto const& view) {
        bool const isGone = std::ranges::find(rows, view->id(), &ProfileRow::id) == rows.end();
        if (isGone)
            adw_preferences_group_remove(m_group, view->widget());
        return isGone;
    });
    // New ones come at the end, as they do in the list.
    for (auto const& row : rows) {
        auto view = std::ranges::find_if(m_rows, [&](auto const& one) { return one->id() == row.id; });
        if (view == m_rows.end()) {
            view = m_rows.insert(view, std::make_unique<ProfileRowView>(m_pane, m_pictures, row.id));
            adw_preferences_group_add(m_group, (*view)->widget());
        }
        (*view)->render(row);
    }
}

void ProfilesPane::renderEditor()
{
    auto* const editor = m_pane.editor();
    if (editor && !m_editor) {
        m_editor = std::make_shared<ProfileEditor>(*editor, m_pictures, m_window);
    } else if (!editor && m_editor) {
        m_editor->close();
        // It is in the middle of telling the click that closed it.
        Glib::signal_idle().connect_once(
            [editorView = std::exchange(m_editor, nullptr)]() mutable { editorView.reset(); });
    }
}

}
