#include "Platform/Gtk/PopupWindow.h"

#include "Platform/Gtk/Accessible.h"
#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/WebView.h"

#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <gtkmm/application.h>

#include <algorithm>

namespace tarn::gtk {

namespace {

// Of the largest screen: a window that does not fit cannot be closed.
Gdk::Rectangle largestMonitor(Gtk::Window& window)
{
    Gdk::Rectangle largest;
    auto const monitors = window.get_display()->get_monitors();
    for (guint index = 0; index < monitors->get_n_items(); ++index) {
        Gdk::Rectangle geometry;
        if (auto const monitor = std::dynamic_pointer_cast<Gdk::Monitor>(monitors->get_object(index)))
            monitor->get_geometry(geometry);
        if (geometry.get_width() * geometry.get_height() > largest.get_width() * largest.get_height())
            largest = geometry;
    }
    return largest;
}

}

PopupWindow::PopupWindow(
    Gtk::Application& application, platform::WebView& view, platform::MenuBar& menuBar, WindowServices const& services)
    : m_application(application)
    , m_view(static_cast<WebView&>(view))
    , m_titles(Gtk::Orientation::VERTICAL)
    , m_origin(Gtk::Orientation::HORIZONTAL, 4)
    , m_editing(m_window)
    , m_menuBar(menuBar, m_window, services.pictures, windowCommands(m_window, m_editing, services))
{
    m_window.add_css_class("tarn-window");
    m_window.add_css_class("popup");

    // The page chooses its title; whose page it is stands below, where a long title cannot push it away.
    m_title.add_css_class("title");
    m_title.set_ellipsize(Pango::EllipsizeMode::END);
    m_title.set_single_line_mode();
    m_host.add_css_class("subtitle");
    // The end of a host says whose it is.
    m_host.set_ellipsize(Pango::EllipsizeMode::START);
    m_host.set_single_line_mode();
    m_lock.set_pixel_size(12);
    m_origin.set_halign(Gtk::Align::CENTER);
    m_origin.append(m_lock);
    m_origin.append(m_host);
    m_titles.set_valign(Gtk::Align::CENTER);
    m_titles.append(m_title);
    m_titles.append(m_origin);
    m_origin.set_visible(false);
    m_headerBar.set_title_widget(m_titles);
    m_window.set_titlebar(m_headerBar);
    m_window.set_child(m_view.widget());

    m_window.signal_close_request().connect(
        [this] {
            m_window.set_visible(false);
            if (auto const onClose = std::exchange(m_onClose, nullptr))
                onClose();
            return true;
        },
        false);
}

PopupWindow::~PopupWindow()
{
    m_window.unset_child();
}

void PopupWindow::present()
{
    bool const isFirst = !isVisible();
    if (isFirst)
        applyContentSize();
    Activation::present(m_application, m_window);
    if (isFirst)
        m_view.grabFocus();
}

void PopupWindow::setContentSize(int width, int height)
{
    m_contentSize = { width, height };
}

void PopupWindow::applyContentSize()
{
    // What the title bar and the border add is known once the window is realised.
    gtk_widget_realize(GTK_WIDGET(m_window.gobj()));
    auto const screen = largestMonitor(m_window);
    auto& content = m_view.widget();
    content.set_size_request(
        std::min(m_contentSize.first, screen.get_width()), std::min(m_contentSize.second, screen.get_height()));
    auto const sizeIn = [&](Gtk::Orientation orientation) {
        int minimum = 0;
        int natural = 0;
        int baseline = -1;
        m_window.measure(orientation, -1, minimum, natural, baseline, baseline);
        return minimum;
    };
    auto const width = sizeIn(Gtk::Orientation::HORIZONTAL);
    auto const height = sizeIn(Gtk::Orientation::VERTICAL);
    content.set_size_request(-1, -1);
    m_window.set_default_size(std::min(width, screen.get_width()), std::min(height, screen.get_height()));
}

void PopupWindow::setTitle(std::string const& title)
{
    m_window.set_title(title);
    m_title.set_text(title);
}

void PopupWindow::setOrigin(platform::PageOrigin const& origin)
{
    using Connection = platform::PageOrigin::Connection;
    bool const isInsecure = origin.connection == Connection::insecure;
    m_host.set_text(isInsecure ? "Not secure: " + origin.text : origin.text);
    m_lock.set_from_icon_name(isInsecure ? "dialog-warning-symbolic" : "channel-secure-symbolic");
    m_lock.set_visible(origin.connection != Connection::none);
    if (isInsecure)
        m_origin.add_css_class("warning");
    else
        m_origin.remove_css_class("warning");
    setAccessibleLabel(m_lock, isInsecure ? "Not a secure connection" : "Secure connection");
    m_origin.set_visible();
}

}
