#pragma once

#include "Platform/Gtk/NativeWindow.h"
#include "Platform/Gtk/WindowCommands.h"
#include "Platform/Window.h"

#include <gtkmm/applicationwindow.h>
#include <gtkmm/box.h>
#include <gtkmm/headerbar.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

#include <utility>

namespace tarn::gtk {

class WebView;

class PopupWindow final : public platform::PopupWindow, public NativeWindow {
public:
    PopupWindow(Gtk::Application&, platform::WebView&, platform::MenuBar&, WindowServices const&);
    ~PopupWindow() override;

    void present() override;
    bool isVisible() const override { return m_window.is_visible(); }
    void setContentSize(int width, int height) override;
    void setTitle(std::string const&) override;
    void setOrigin(platform::PageOrigin const&) override;
    void close() override { m_window.close(); }
    void setOnClose(std::function<void()> onClose) override { m_onClose = std::move(onClose); }

    Gtk::Window& native() override { return m_window; }

private:
    void applyContentSize();

    Gtk::Application& m_application;
    WebView& m_view;
    // In points.
    std::pair<int, int> m_contentSize { 0, 0 };
    std::function<void()> m_onClose;

    Gtk::ApplicationWindow m_window;
    Gtk::HeaderBar m_headerBar;
    Gtk::Box m_titles;
    Gtk::Label m_title;
    Gtk::Box m_origin;
    Gtk::Image m_lock;
    Gtk::Label m_host;
    EditingCommands m_editing;
    MenuBarView m_menuBar;
};

}
