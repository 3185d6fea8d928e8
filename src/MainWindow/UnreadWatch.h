#pragma once

#include "MainWindow/SidebarView.h"
#include "Platform/DockTile.h"
#include "Platform/WebView.h"

namespace tarn {

// Shows the unread count of the mail page's title on the dock and in the sidebar; in the window's title where there is
// no dock.
class UnreadWatch {
public:
    UnreadWatch(platform::DockTile&, SidebarView&);
    ~UnreadWatch();
    UnreadWatch(UnreadWatch const&) = delete;
    UnreadWatch& operator=(UnreadWatch const&) = delete;

    // Set by the owner: what the window's title begins with, "(3) " or nothing.
    std::function<void(std::string const& prefix)> onTitlePrefix;

    // Follows the view's title, from its present value on. The view is outlived by this.
    void watch(platform::WebView&);
    void clear();

private:
    void show(std::int64_t count);
    void showInTitle() const;

    platform::DockTile& m_dockTile;
    SidebarView& m_sidebar;
    std::int64_t m_count { 0 };
};

}
