#pragma once

#include "MainWindow/SidebarView.h"
#include "Platform/DockTile.h"
#include "Platform/WebView.h"

namespace tarn {

// Shows the unread count of the mail page's title on the dock and in the sidebar.
class UnreadWatch {
public:
    UnreadWatch(platform::DockTile&, SidebarView&);

    // Follows the view's title, from its present value on. The view is outlived by this.
    void watch(platform::WebView&);
    void clear();

private:
    void show(std::int64_t count);

    platform::DockTile& m_dockTile;
    SidebarView& m_sidebar;
};

}
