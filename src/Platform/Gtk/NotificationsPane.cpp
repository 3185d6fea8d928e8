#include "Platform/Gtk/NotificationsPane.h"

#include "Platform/Gtk/PlatformText.h"
#include "Platform/Gtk/Preferences.h"

#include <gtkmm/button.h>

namespace tarn::gtk {

NotificationsPane::NotificationsPane(tarn::NotificationsPane& pane, int width)
    : m_pane(pane)
{
    auto* const page = makePage(width);
    page->append(*makeText(platformText(tarn::NotificationsPane::introduction)));
    m_desktopRow = addStep(*page, tarn::NotificationsPane::desktopStep, [this] { m_pane.openSystemSettings(); });
    addStep(*page, tarn::NotificationsPane::gmailStep, [this] { m_pane.openGmailSettings(); });
    append(*page);

    m_pane.onChange = [this] { render(); };
    signal_map().connect([this] { m_pane.didAppear(); });
    signal_unmap().connect([this] { m_pane.didDisappear(); });
    render();
}

NotificationsPane::~NotificationsPane()
{
    m_pane.onChange = nullptr;
}

AdwActionRow* NotificationsPane::addStep(
    Gtk::Box& page, tarn::NotificationsPane::Step const& step, std::function<void()> onClick)
{
    auto* const group = makeGroup();
    auto* const row = makeRow(platformText(step.label));
    auto const title = platformText(step.button);
    auto* const button = Gtk::make_managed<Gtk::Button>();
    setTitle(*button, title, title[title.rfind("Open") + 5]);
    button->set_valign(Gtk::Align::CENTER);
    button->signal_clicked().connect(std::move(onClick));
    adw_action_row_add_suffix(row, GTK_WIDGET(button->gobj()));
    adw_action_row_set_title_lines(row, 0);
    adw_preferences_group_add(group, GTK_WIDGET(row));
    page.append(*Glib::wrap(GTK_WIDGET(group)));
    page.append(*makeFootnote(platformText(step.footer)));
    return row;
}

void NotificationsPane::render()
{
    adw_action_row_set_subtitle(m_desktopRow, platformText(m_pane.statusText()).c_str());
}

}
