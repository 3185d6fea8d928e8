#include "Platform/Gtk/DownloadsButton.h"

#include "Platform/Gtk/Accessible.h"

#include <glibmm/main.h>
#include <gtkmm/image.h>
#include <gtkmm/scrolledwindow.h>

#include <algorithm>

namespace tarn::gtk {

namespace {

constexpr int rowSpacing = 12;
constexpr int margin = 6;
constexpr int tallest = 400;
// In milliseconds.
constexpr unsigned pulseInterval = 120;

std::string accessibleText(std::size_t running, std::optional<double> fraction)
{
    if (running == 0)
        return "Downloads";
    auto text = "Downloads, " + std::to_string(running) + " running";
    if (fraction)
        text += ", " + std::to_string(static_cast<int>(*fraction * 100)) + " %";
    return text;
}

}

DownloadsButton::DownloadsButton(DownloadList& list)
    : m_list(list)
    , m_face(Gtk::Orientation::VERTICAL)
    , m_rows(Gtk::Orientation::VERTICAL, rowSpacing)
    , m_clear("Clear")
{
    add_css_class("downloads-button");
    auto* const icon = Gtk::make_managed<Gtk::Image>();
    icon->set_from_icon_name("folder-download-symbolic");
    auto* const top = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
    top->set_halign(Gtk::Align::CENTER);
    top->append(*icon);
    top->append(m_count);
    m_count.add_css_class("numeric");
    m_face.set_valign(Gtk::Align::CENTER);
    m_face.append(*top);
    m_face.append(m_progress);
    m_progress.set_pulse_step(0.2);
    set_child(m_face);
    set_tooltip_text("Downloads");
    set_focus_on_click(false);

    auto* const scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_propagate_natural_height();
    scroller->set_max_content_height(tallest);
    scroller->set_child(m_rows);
    m_clear.set_halign(Gtk::Align::END);
    m_clear.add_css_class("flat");
    m_clear.signal_clicked().connect([this] { m_list.clearFinished(); });
    auto* const content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, rowSpacing);
    content->set_margin(margin);
    content->append(*scroller);
    content->append(m_clear);
    m_popover.set_child(*content);
    set_popover(m_popover);

    m_list.onChange = [this] { render(); };
    render();
}

DownloadsButton::~DownloadsButton()
{
    m_list.onChange = nullptr;
}

void DownloadsButton::render()
{
    auto const& items = m_list.items();
    auto const running = m_list.runningCount();
    auto const fraction = m_list.fraction();
    if (items.empty())
        m_popover.popdown();
    set_visible(!items.empty());
    m_count.set_text(std::to_string(running));
    m_count.set_visible(running > 0);
    m_progress.set_visible(running > 0);
    if (fraction)
        m_progress.set_fraction(*fraction);
    m_clear.set_visible(running < items.size());
    auto const text = accessibleText(running, fraction);
    setAccessibleLabel(*this, text);
    // The part of it that takes the focus.
    setAccessibleLabel(*get_first_child(), text);
    renderRows();
    pulseWhileUnmeasured(std::ranges::any_of(
        items, [](auto const& item) { return item.state == DownloadItem::State::running && !item.fraction(); }));
}

void DownloadsButton::renderRows()
{
    auto const& items = m_list.items();
    std::erase_if(m_shown, [&](auto* row) {
        bool const isGone = std::ranges::find(items, row->id(), &DownloadItem::id) == items.end();
        if (isGone)
            m_rows.remove(*row);
        return isGone;
    });
    for (std::size_t index = 0; index < items.size(); ++index) {
        // Only new ones are missing, and they come first.
        if (index < m_shown.size() && m_shown[index]->id() == items[index].id) {
            m_shown[index]->render(items[index]);
            continue;
        }
        auto* const row = Gtk::make_managed<DownloadRow>(m_list, items[index]);
        if (index == 0)
            m_rows.prepend(*row);
        else
            m_rows.insert_child_after(*row, *m_shown[index - 1]);
        m_shown.insert(m_shown.begin() + static_cast<std::ptrdiff_t>(index), row);
    }
}

void DownloadsButton::pulseWhileUnmeasured(bool unmeasured)
{
    if (std::exchange(m_pulses, unmeasured) == unmeasured)
        return;
    m_pulse = {};
    if (!unmeasured)
        return;
    m_pulse = Glib::signal_timeout().connect(
        [this] {
            if (!m_list.fraction())
                m_progress.pulse();
            for (auto* const row : m_shown)
                row->pulse();
            return true;
        },
        pulseInterval);
}

}
