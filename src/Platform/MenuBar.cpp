#include "Platform/MenuBar.h"

#include <algorithm>

namespace tarn::platform {

namespace {

MenuItem const* findItem(std::vector<MenuEntry> const& entries, Command command, int tag)
{
    for (auto const& entry : entries) {
        if (auto const* const item = std::get_if<MenuItem>(&entry)) {
            auto const* const own = std::get_if<Command>(&item->action);
            if (own && *own == command && item->tag == tag)
                return item;
        } else if (auto const* const submenu = std::get_if<Menu>(&entry)) {
            if (auto const* const found = findItem(submenu->entries, command, tag))
                return found;
        }
    }
    return nullptr;
}

}

void MenuBar::replaceSubmenu(std::string_view title, Menu replacement)
{
    auto const menu = std::ranges::find(m_menus, title, &Menu::title);
    if (menu == m_menus.end())
        return;
    menu->entries = std::move(replacement.entries);
    menusDidChange.emit();
}

std::optional<Url> MenuBar::representedUrl(Command command, int tag) const
{
    for (auto const& menu : m_menus) {
        if (auto const* const item = findItem(menu.entries, command, tag))
            return item->representedUrl;
    }
    return std::nullopt;
}

void MenuBar::setReceivers(std::vector<CommandReceiver*> receivers)
{
    m_receivers = std::move(receivers);
    revalidate();
}

bool MenuBar::perform(Command command, int tag)
{
    return std::ranges::any_of(m_receivers, [&](auto* receiver) { return receiver->perform(command, tag); });
}

std::optional<CommandState> MenuBar::validate(Command command, int tag) const
{
    for (auto const* receiver : m_receivers) {
        if (auto const state = receiver->validate(command, tag))
            return state;
    }
    return std::nullopt;
}

void MenuBar::revalidate()
{
    statesDidChange.emit();
}

}
