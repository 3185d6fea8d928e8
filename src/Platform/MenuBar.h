#pragma once

#include "Platform/Menu.h"

#include <sigc++/signal.h>

#include <string_view>
#include <vector>

namespace tarn::platform {

// The application's menu bar as data, and the receivers of its commands. The adapter draws it and watches it.
class MenuBar {
public:
    explicit MenuBar(std::vector<Menu> menus)
        : m_menus(std::move(menus))
    {
    }
    MenuBar(MenuBar const&) = delete;
    MenuBar& operator=(MenuBar const&) = delete;

    std::vector<Menu> const& menus() const { return m_menus; }
    // Replaces the entries of the top-level menu of that title; no such menu, no change.
    void replaceSubmenu(std::string_view title, Menu);

    // What the item of this command and tag carries.
    std::optional<Url> representedUrl(Command, int tag) const;

    // Asked in this order. They must outlive the bar or be taken out.
    void setReceivers(std::vector<CommandReceiver*>);
    bool perform(Command, int tag);
    // Nothing when no receiver knows the command.
    std::optional<CommandState> validate(Command, int tag) const;
    // To be called when an answer of validate() may have changed.
    void revalidate();

    // Every window that draws the bar listens.
    sigc::signal<void()> menusDidChange;
    sigc::signal<void()> statesDidChange;

private:
    std::vector<Menu> m_menus;
    std::vector<CommandReceiver*> m_receivers;
};

}
