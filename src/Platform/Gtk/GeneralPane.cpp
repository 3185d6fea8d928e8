#include "Platform/Gtk/GeneralPane.h"

#include "Platform/Gtk/Preferences.h"

namespace tarn::gtk {

GeneralPane::GeneralPane(tarn::GeneralPane& pane, int width)
    : m_pane(pane)
    , m_error(makeText({}))
{
    auto* const row = makeRow(marked(tarn::GeneralPane::loginTitle, 'S'), Mnemonic::yes);
    m_login.set_valign(Gtk::Align::CENTER);
    m_login.property_active().signal_changed().connect([this] { m_pane.setStartsAtLogin(m_login.get_active()); });
    adw_action_row_add_suffix(row, GTK_WIDGET(m_login.gobj()));
    adw_action_row_set_activatable_widget(row, GTK_WIDGET(m_login.gobj()));

    auto* const page = makePage(width);
    auto* const group = makeGroup();
    adw_preferences_group_add(group, GTK_WIDGET(row));
    page->append(*Glib::wrap(GTK_WIDGET(group)));
    page->append(*makeFootnote(tarn::GeneralPane::loginNote));
    m_error->add_css_class("error");
    page->append(*m_error);
    append(*page);

    m_pane.onChange = [this] { render(); };
    // It may have been changed elsewhere.
    signal_map().connect([this] { render(); });
    render();
}

GeneralPane::~GeneralPane()
{
    m_pane.onChange = nullptr;
}

void GeneralPane::render()
{
    m_login.set_active(m_pane.startsAtLogin());
    m_error->set_visible(m_pane.error().has_value());
    m_error->set_text(m_pane.error().value_or(""));
}

}
