#include "MainWindow/SidebarView.h"

#include <utility>

namespace tarn {

namespace {

template <std::size_t... positions> auto makeButtons(std::index_sequence<positions...>)
{
    return std::array { SidebarButton { .app = GoogleApp::allCases[positions] }... };
}

}

SidebarView::SidebarView()
    : m_appButtons(makeButtons(std::make_index_sequence<GoogleApp::allCases.size()> {}))
{
}

template <typename Change> void SidebarView::change(Change change)
{
    auto const before = std::pair { m_appButtons, m_profileButton };
    change();
    if (onChange && before != std::pair { m_appButtons, m_profileButton })
        onChange();
}

void SidebarView::setEnabledApps(std::set<GoogleApp> const& apps)
{
    change([&] {
        for (auto& button : m_appButtons)
            button.isVisible = apps.contains(button.app);
    });
}

void SidebarView::setActive(std::optional<GoogleApp> app)
{
    change([&] {
        for (auto& button : m_appButtons)
            button.isActive = button.app == app;
    });
}

void SidebarView::setUnread(bool unread)
{
    change([&] { button(GoogleApp::mail).showsDot = unread; });
}

void SidebarView::setProfile(std::string const& name, std::optional<std::filesystem::path> image)
{
    change([&] {
        m_profileButton.tooltip = name + ": switch profile";
        m_profileButton.accessibilityLabel = "Profile: " + name;
        m_profileButton.image = std::move(image);
    });
}

void SidebarView::popUpProfileMenu(platform::Menu menu)
{
    m_profileMenu = std::move(menu);
}

void SidebarView::clickApp(std::string_view identifier)
{
    if (auto const app = GoogleApp::fromRawValue(identifier); app && onSelectApp)
        onSelectApp(*app);
}

void SidebarView::clickSettings()
{
    if (onSettings)
        onSettings();
}

void SidebarView::clickProfile()
{
    if (onProfile)
        onProfile();
    // The ring and the menu appear together, and stay until the menu closes.
    change([&] { m_profileButton.isMenuOpen = m_profileMenu.has_value(); });
}

void SidebarView::profileMenuDidClose()
{
    m_profileMenu.reset();
    change([&] { m_profileButton.isMenuOpen = false; });
}

}
