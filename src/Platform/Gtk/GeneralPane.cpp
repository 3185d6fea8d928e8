#include "Platform/Gtk/GeneralPane.h"

#include "Platform/Gtk/Preferences.h"

namespace tarn::gtk {

GeneralPane::GeneralPane(tarn::GeneralPane& pane, int width)
    : m_pane(pane)
    , m_error(makeText({}))
{
    auto* const page = makePage(width);
    addRow(*page, marked(tarn::GeneralPane::loginTitle, 'S'), m_login, tarn::GeneralPane::loginNote);
    m_login.property_active().signal_changed().connect([this] { m_pane.setStartsAtLogin(m_login.get_active()); });
    m_error->add_css_class("error");
    page->append(*m_error);
    addRow(*page, marked(tarn::GeneralPane::safeRenderingTitle, 'r'), m_safeRendering,
        tarn::GeneralPane::safeRenderingNote);
    m_safeRendering.property_active().signal_changed().connect(
        [this] { m_pane.setRendersSafely(m_safeRendering.get_active()); });
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

void GeneralPane::addRow(Gtk::Box& page, std::string const& title, Gtk::Switch& onOff, std::string_view note)
{
    auto* const row = makeRow(title, Mnemonic::yes);
    onOff.set_valign(Gtk::Align::CENTER);
    adw_action_row_add_suffix(row, GTK_WIDGET(onOff.gobj()));
    adw_action_row_set_activatable_widget(row, GTK_WIDGET(onOff.gobj()));
    auto* const group = makeGroup();
    adw_preferences_group_add(group, GTK_WIDGET(row));
    page.append(*Glib::wrap(GTK_WIDGET(group)));
    page.append(*makeFootnote(note));
}

void GeneralPane::render()
{
    m_safeRendering.set_active(m_pane.rendersSafely());
    m_login.set_active(m_pane.startsAtLogin());
    m_error->set_visible(m_pane.error().has_value());
    m_error->set_text(m_pane.error().value_or(""));
}

}
