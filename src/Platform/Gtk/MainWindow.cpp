#include "Platform/Gtk/MainWindow.h"

#include "Platform/Gtk/Activation.h"
#include "Platform/Gtk/WebView.h"

#include <adwaita.h>
#include <glibmm/main.h>
#include <gtkmm/application.h>
#include <gtkmm/separator.h>

namespace tarn::gtk {

namespace {

// GTK_TYPE_POPOVER_MENU_BAR or GTK_TYPE_POPOVER_MENU
bool isInside(Gtk::Widget* widget, GType type)
{
    return widget && gtk_widget_get_ancestor(widget->gobj(), type);
}

}

MainWindow::MainWindow(Gtk::Application& application, MainWindowAppearance const& appearance,
    tarn::SidebarView& sidebar, DownloadList& downloads, FindBarController& findBar, platform::MenuBar& menuBar,
    WindowServices const& services)
    : m_application(application)
    , m_maximized(appearance.frame.maximized)
    , m_findBar(findBar)
    , m_sidebar(sidebar, services.pictures, appearance.sidebarWidth)
    , m_downloads(downloads)
    , m_editing(m_window)
    , m_menuBar(menuBar, m_window, services.pictures, platformCommands(services))
{
    m_window.set_title(appearance.title);
    m_window.set_default_size(appearance.frame.width, appearance.frame.height);
    m_window.set_size_request(appearance.minimumWidth, appearance.minimumHeight);
    m_window.add_css_class("tarn-window");

    m_headerBar.pack_start(m_menuBar.widget());
    m_headerBar.pack_end(m_downloads);
    // No text in the title bar: the menus have the room.
    m_headerBar.set_title_widget(*Gtk::make_managed<Gtk::Box>());
    m_window.set_titlebar(m_headerBar);

    m_stack.set_expand();
    m_box.append(m_sidebar);
    m_box.append(m_stack);
    m_rows.append(m_findBar);
    m_rows.append(m_box);
    m_window.set_child(m_rows);

    Activation::add(application, m_window);
    m_menuBar.setAccelerators(application);

    auto const changed = [this] { frameChanged(); };
    m_window.property_default_width().signal_changed().connect(changed);
    m_window.property_default_height().signal_changed().connect(changed);
    m_window.property_maximized().signal_changed().connect(changed);
    m_window.signal_close_request().connect(
        [this] {
            hide();
            return true;
        },
        false);
    m_editing.onChange = [&menuBar] { menuBar.revalidate(); };
    watchFocus();
}

MainWindow::~MainWindow() = default;

MenuBarView::PlatformCommands MainWindow::platformCommands(WindowServices const& services)
{
    auto commands = windowCommands(m_window, m_editing, services);
    commands.insert_or_assign(platform::Command::about, MenuBarView::PlatformCommand { [this] { showAbout(); } });
    return commands;
}

void MainWindow::present()
{
    if (!isVisible() && m_maximized)
        m_window.maximize();
    Activation::present(m_application, m_window);
}

void MainWindow::hide()
{
    frameChanged();
    m_window.set_visible(false);
}

void MainWindow::frameChanged()
{
    if (!isVisible())
        return;
    m_maximized = m_window.is_maximized();
    platform::WindowFrame frame { .maximized = m_maximized };
    m_window.get_default_size(frame.width, frame.height);
    if (m_onFrameChange)
        m_onFrameChange(frame);
}

void MainWindow::setContent(platform::WebView* view)
{
    m_content = view;
    if (!view) {
        while (auto* const child = m_stack.get_first_child())
            m_stack.remove(*child);
        return;
    }
    // Views stay in the stack while they are not shown: putting one back costs no more than drawing it.
    auto& widget = widgetOf(*view);
    if (widget.get_parent() != &m_stack)
        m_stack.add(widget);
    m_stack.set_visible_child(widget);
}

void MainWindow::focus(platform::WebView& view)
{
    static_cast<WebView&>(view).grabFocus();
}

void MainWindow::watchFocus()
{
    // After a menu closes the toolkit leaves the focus on the menu bar, and typing no longer reaches the page.
    m_window.property_focus_widget().signal_changed().connect([this] {
        auto* const focused = m_window.get_focus();
        bool const inMenu = isInside(focused, GTK_TYPE_POPOVER_MENU);
        bool const onBar = !inMenu && isInside(focused, GTK_TYPE_POPOVER_MENU_BAR);
        if (onBar && m_menuHadFocus) {
            Glib::signal_idle().connect_once(m_lifetime.guard([this] {
                if (m_content && !isInside(m_window.get_focus(), GTK_TYPE_POPOVER_MENU))
                    focus(*m_content);
            }));
        }
        m_menuHadFocus = inMenu;
    });
}

void MainWindow::showAbout()
{
    adw_show_about_window(GTK_WINDOW(m_window.gobj()), "application-name", "Tarn", "application-icon",
        m_application.get_id().c_str(), "version", TARN_VERSION, "developer-name", "The Tarn developers",
        "license-type", GTK_LICENSE_MIT_X11, nullptr);
}

}
