#include "MainWindow/UnreadWatch.h"

#include "Bridge/UnreadCount.h"

namespace tarn {

UnreadWatch::UnreadWatch(platform::DockTile& dockTile, SidebarView& sidebar)
    : m_dockTile(dockTile)
    , m_sidebar(sidebar)
{
    m_dockTile.setOnShownChange([this] { showInTitle(); });
}

UnreadWatch::~UnreadWatch()
{
    m_dockTile.setOnShownChange(nullptr);
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
    m_count = count;
    m_dockTile.setBadge(count > 0 ? std::optional(count) : std::nullopt);
    m_sidebar.setUnread(count > 0);
    showInTitle();
}

void UnreadWatch::showInTitle() const
{
    if (onTitlePrefix)
        onTitlePrefix(m_count > 0 && !m_dockTile.isShown() ? "(" + std::to_string(m_count) + ") " : "");
}

}
