#pragma once

#include "Downloads/DownloadList.h"
#include "MainWindow/FindBarController.h"
#include "MainWindow/SidebarView.h"
#include "Platform/MenuBar.h"
#include "Platform/Window.h"

#include <memory>
#include <string>

namespace tarn {

class SettingsWindowController;

struct MainWindowAppearance {
    // For the window list; the title bar itself shows the menu bar instead.
    std::string title;
    platform::WindowFrame frame;
    int minimumWidth { 0 };
    int minimumHeight { 0 };
    int sidebarWidth { 0 };
};

// Where the core asks for its native counterparts. What is passed by reference outlives the window.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;

    virtual std::unique_ptr<platform::WebWindow> makeMainWindow(
        MainWindowAppearance const&, SidebarView&, DownloadList&, FindBarController&, platform::MenuBar&)
        = 0;
    // The menu bar is not drawn: it gives the window its commands. The view outlives the window.
    virtual std::unique_ptr<platform::PopupWindow> makePopupWindow(platform::WebView&, platform::MenuBar&) = 0;
    virtual std::unique_ptr<platform::Window> makeSettingsWindow(SettingsWindowController&) = 0;
};

}
