#include "Platform/Gtk/MenuBarView.h"

#include "Platform/Gtk/KeyLabels.h"

#include <giomm/simpleaction.h>
#include <gtkmm/application.h>

#include <algorithm>

namespace tarn::gtk {

namespace {

using platform::Command;

// Names as they are seen on the accessibility and the session bus.
std::string actionName(Command command, int tag)
{
    switch (command) {
    case Command::about:
        return "about";
    case Command::quit:
        return "quit";
    case Command::closeWindow:
        return "close-window";
    case Command::showApp:
        // One action per app: each is enabled by itself.
        return "show-app-" + std::to_string(tag + 1);
    case Command::goBack:
        return "go-back";
    case Command::goForward:
        return "go-forward";
    case Command::reloadPage:
        return "reload-page";
    case Command::zoomIn:
        return "zoom-in";
    case Command::zoomOut:
        return "zoom-out";
    case Command::actualSize:
        return "actual-size";
    case Command::toggleFullScreen:
        return "toggle-full-screen";
    case Command::minimize:
        return "minimize";
    }
    return {};
}

std::string menuPrefix(std::size_t index)
{
    return "menu-" + std::to_string(index);
}

}

MenuBarView::MenuBarView(platform::MenuBar& menuBar, Gtk::ApplicationWindow& window, PlatformCommands commands)
    : m_menuBar(menuBar)
    , m_window(window)
    , m_platformCommands(std::move(commands))
    , m_widget(Gio::Menu::create())
{
    for (auto const& menu : m_menuBar.menus())
        addActions(menu);
    rebuild();
    revalidate();
    m_menuBar.onMenusChange = [this] { rebuild(); };
    m_menuBar.onStatesChange = [this] { revalidate(); };
}

MenuBarView::~MenuBarView()
{
    m_menuBar.onMenusChange = nullptr;
    m_menuBar.onStatesChange = nullptr;
}

void MenuBarView::addActions(platform::Menu const& menu)
{
    for (auto const& entry : menu.entries) {
        if (auto const* const item = std::get_if<platform::MenuItem>(&entry))
            addAction(*item);
        else if (auto const* const submenu = std::get_if<platform::Menu>(&entry))
            addActions(*submenu);
    }
}

void MenuBarView::addAction(platform::MenuItem const& item)
{
    auto const* const command = std::get_if<Command>(&item.action);
    if (!command)
        return;
    auto const existing = std::ranges::find_if(
        m_entries, [&](Entry const& entry) { return entry.command == *command && entry.tag == item.tag; });
    auto& entry = existing != m_entries.end() ? *existing : m_entries.emplace_back();
    if (item.key) {
        for (auto const& key : accelerators(*item.key))
            entry.accelerators.push_back(key);
    }
    if (entry.action)
        return;

    entry.command = *command;
    entry.tag = item.tag;
    auto const perform = [this, command = *command, tag = item.tag] {
        if (m_menuBar.perform(command, tag))
            return;
        if (auto const own = m_platformCommands.find(command); own != m_platformCommands.end())
            own->second();
    };
    auto const name = actionName(*command, item.tag);
    if (*command == Command::showApp) {
        entry.action = Gio::SimpleAction::create_bool(name, false);
        entry.action->signal_activate().connect([perform](Glib::VariantBase const&) { perform(); });
    } else {
        entry.action = Gio::SimpleAction::create(name);
        entry.action->signal_activate().connect([perform](Glib::VariantBase const&) { perform(); });
    }
    m_window.add_action(entry.action);
}

void MenuBarView::rebuild()
{
    auto const bar = Gio::Menu::create();
    m_models.clear();
    for (std::size_t index = 0; index < m_menuBar.menus().size(); ++index) {
        auto const& menu = m_menuBar.menus()[index];
        auto const& model = m_models.emplace_back(
            menu, menuPrefix(index), [](Command command, int tag) { return "win." + actionName(command, tag); });
        m_window.insert_action_group(menuPrefix(index), model.actions());
        bar->append_submenu(menu.title, model.model());
    }
    m_widget.set_menu_model(bar);
}

void MenuBarView::revalidate()
{
    for (auto const& entry : m_entries) {
        auto const state = stateOf(entry.command, entry.tag).value_or(platform::CommandState { .enabled = false });
        entry.action->set_enabled(state.enabled && !state.hidden);
        if (entry.command == Command::showApp)
            entry.action->change_state(state.checked);
    }
}

std::optional<platform::CommandState> MenuBarView::stateOf(Command command, int tag) const
{
    if (auto const state = m_menuBar.validate(command, tag))
        return state;
    if (m_platformCommands.contains(command))
        return platform::CommandState {};
    return std::nullopt;
}

void MenuBarView::setAccelerators(Gtk::Application& application)
{
    for (auto const& entry : m_entries) {
        std::vector<Glib::ustring> const keys(entry.accelerators.begin(), entry.accelerators.end());
        application.set_accels_for_action("win." + actionName(entry.command, entry.tag), keys);
    }
}

}
