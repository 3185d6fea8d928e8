#include "MainWindow/UnreadWatch.h"

#include "Bridge/UnreadCount.h"

namespace tarn {

UnreadWatch::UnreadWatch(platform::DockTile& dockTile, SidebarView& sidebar)
    : m_dockTile(dockTile)
    , m_sidebar(sidebar)
{
}

void UnreadWatch::watch(platform::WebView& view)
{
    auto const update = [this, &view] { show(UnreadCount::parse(view.title())); };
    view.setOnTitleChange(update);
    update();
}

void UnreadWatch::clear()
{
    show(0);
}

void UnreadWatch::show(std::int64_t count)
{
    m_dockTile.setBadge(count > 0 ? std::optional(count) : std::nullopt);
    m_sidebar.setUnread(count > 0);
}

}
