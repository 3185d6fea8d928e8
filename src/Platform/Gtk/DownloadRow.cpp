#include "Platform/Gtk/DownloadRow.h"

#include "Platform/Gtk/Accessible.h"

#include <giomm/contenttype.h>
#include <glibmm/convert.h>

namespace tarn::gtk {

namespace {

constexpr int spacing = 12;
constexpr int iconSize = 32;
constexpr int textWidth = 240;

std::string sizeText(std::int64_t bytes)
{
    g_autofree char* text = g_format_size(static_cast<guint64>(std::max<std::int64_t>(bytes, 0)));
    return text;
}

std::string statusText(DownloadItem const& item)
{
    auto const completed = sizeText(item.progress.completed);
    if (item.state == DownloadItem::State::finished || item.progress.total < 1)
        return completed;
    return completed + " of " + sizeText(item.progress.total);
}

void makeRowButton(Gtk::Button& button, char const* icon, std::string const& label)
{
    button.set_icon_name(icon);
    button.set_tooltip_text(label);
    button.set_valign(Gtk::Align::CENTER);
    button.add_css_class("flat");
    button.add_css_class("circular");
}

}

DownloadRow::DownloadRow(DownloadList& list, DownloadItem const& item)
    : Gtk::Box(Gtk::Orientation::HORIZONTAL, spacing)
    , m_id(item.id)
{
    add_css_class("download-row");
    auto const name = Glib::filename_display_basename(item.file.string());

    bool uncertain = false;
    m_icon.set(Gio::content_type_get_icon(Gio::content_type_guess(name, std::string(), uncertain)));
    m_icon.set_pixel_size(iconSize);
    append(m_icon);

    m_name.set_text(name);
    m_name.set_tooltip_text(name);
    m_name.set_xalign(0);
    // The end of a name tells what it is.
    m_name.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    m_status.set_xalign(0);
    m_status.add_css_class("caption");
    m_status.add_css_class("dim-label");
    m_status.add_css_class("numeric");
    setAccessibleLabel(m_progress, name);
    auto* const text = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    text->set_size_request(textWidth, -1);
    text->set_hexpand();
    text->set_valign(Gtk::Align::CENTER);
    text->append(m_name);
    text->append(m_progress);
    text->append(m_status);
    append(*text);

    m_open.set_label("Open");
    m_open.set_valign(Gtk::Align::CENTER);
    m_open.add_css_class("flat");
    makeRowButton(m_reveal, "folder-symbolic", "Show in Folder");
    makeRowButton(m_cancel, "window-close-symbolic", "Cancel");
    setAccessibleLabel(m_open, "Open " + name);
    setAccessibleLabel(m_reveal, "Show " + name + " in Folder");
    setAccessibleLabel(m_cancel, "Cancel " + name);
    m_open.signal_clicked().connect([&list, id = m_id] { list.open(id); });
    m_reveal.signal_clicked().connect([&list, id = m_id] { list.reveal(id); });
    m_cancel.signal_clicked().connect([&list, id = m_id] { list.cancel(id); });
    append(m_open);
    append(m_reveal);
    append(m_cancel);

    render(item);
}

void DownloadRow::render(DownloadItem const& item)
{
    bool const running = item.state == DownloadItem::State::running;
    m_progress.set_visible(running);
    m_cancel.set_visible(running);
    m_open.set_visible(!running);
    m_reveal.set_visible(!running);
    m_status.set_text(statusText(item));
    auto const fraction = item.fraction();
    m_isMeasured = !running || fraction.has_value();
    if (fraction)
        m_progress.set_fraction(*fraction);
}

void DownloadRow::pulse()
{
    if (!m_isMeasured)
        m_progress.pulse();
}

}
