#pragma once

#include "MainWindow/WindowFactory.h"
#include "Platform/Gtk/DownloadsButton.h"
#include "Platform/Gtk/FindBar.h"
#include "Platform/Gtk/MenuBarView.h"
#include "Platform/Gtk/NativeWindow.h"
#include "Platform/Gtk/SidebarView.h"
#include "Platform/Gtk/WindowCommands.h"
#include "Platform/Window.h"
#include "Support/Lifetime.h"

#include <gtkmm/applicationwindow.h>
#include <gtkmm/headerbar.h>
#include <gtkmm/stack.h>

namespace tarn::gtk {

class MainWindow final : public platform::WebWindow, public NativeWindow {
public:
    MainWindow(Gtk::Application&, MainWindowAppearance const&, tarn::SidebarView&, DownloadList&, FindBarController&,
        platform::MenuBar&, WindowServices const&);
    ~MainWindow() override;

    void present() override;
    bool isVisible() const override { return m_window.is_visible(); }
    void setContent(platform::WebView*) override;
    void focus(platform::WebView&) override;
    void setTitle(std::string const& title) override { m_window.set_title(title); }
    void setOnFrameChange(std::function<void(platform::WindowFrame)> onFrameChange) override
    {
        m_onFrameChange = std::move(onFrameChange);
    }

    Gtk::Window& native() override { return m_window; }

private:
    MenuBarView::PlatformCommands platformCommands(WindowServices const&);
    void hide();
    void frameChanged();
    void watchFocus();
    void showAbout();

    Gtk::Application& m_application;
    std::function<void(platform::WindowFrame)> m_onFrameChange;
    // Kept here: a hidden window forgets it.
    bool m_maximized;
    bool m_menuHadFocus { false };
    platform::WebView* m_content { nullptr };

    Gtk::ApplicationWindow m_window;
    Gtk::HeaderBar m_headerBar;
    Gtk::Box m_rows { Gtk::Orientation::VERTICAL };
    FindBar m_findBar;
    Gtk::Box m_box;
    SidebarView m_sidebar;
    Gtk::Stack m_stack;
    DownloadsButton m_downloads;
    EditingCommands m_editing;
    MenuBarView m_menuBar;
    Lifetime m_lifetime;
};

}
