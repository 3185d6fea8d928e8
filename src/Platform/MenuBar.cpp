#include "Platform/MenuBar.h"

#include <algorithm>

namespace tarn::platform {

void MenuBar::replaceSubmenu(std::string_view title, Menu replacement)
{
    auto const menu = std::ranges::find(m_menus, title, &Menu::title);
    if (menu == m_menus.end())
        return;
    menu->entries = std::move(replacement.entries);
    if (onMenusChange)
        onMenusChange();
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
    if (onStatesChange)
        onStatesChange();
}

}
