#include "Platform/Gtk/MenuBarView.h"

#include "Platform/Gtk/KeyLabels.h"

#include <giomm/simpleaction.h>
#include <gtkmm/application.h>

#include <algorithm>
#include <array>
#include <utility>

namespace tarn::gtk {

namespace {

using platform::Command;

struct Row {
    Command command;
    // As it is seen on the accessibility and the session bus.
    char const* action;
};

// The commands that are offered here. Other desktops have words for hiding programs and for checking a document's
// spelling as a whole; this one has not.
constexpr std::array offered {
    Row { Command::about, "about" },
    Row { Command::checkForUpdates, "check-for-updates" },
    Row { Command::openSettings, "open-settings" },
    Row { Command::setDefaultEmailApp, "set-default-email-app" },
    Row { Command::quit, "quit" },
    Row { Command::newItem, "new-item" },
    Row { Command::closeWindow, "close-window" },
    Row { Command::printPage, "print-page" },
    Row { Command::undo, "undo" },
    Row { Command::redo, "redo" },
    Row { Command::cut, "cut" },
    Row { Command::copy, "copy" },
    Row { Command::paste, "paste" },
    Row { Command::selectAll, "select-all" },
    Row { Command::showFind, "show-find" },
    Row { Command::findNext, "find-next" },
    Row { Command::findPrevious, "find-previous" },
    Row { Command::checkSpellingWhileTyping, "check-spelling-while-typing" },
    Row { Command::showApp, "show-app" },
    Row { Command::goBack, "go-back" },
    Row { Command::goForward, "go-forward" },
    Row { Command::reloadPage, "reload-page" },
    Row { Command::zoomIn, "zoom-in" },
    Row { Command::zoomOut, "zoom-out" },
    Row { Command::actualSize, "actual-size" },
    Row { Command::toggleFullScreen, "toggle-full-screen" },
    Row { Command::minimize, "minimize" },
    Row { Command::zoomWindow, "zoom-window" },
};

// Empty for a command that is not offered.
std::string actionName(Command command, int tag)
{
    auto const row = std::ranges::find(offered, command, &Row::command);
    if (row == offered.end())
        return {};
    // One action per app and per new thing: each is enabled by itself.
    bool const hasTags = command == Command::showApp || command == Command::newItem;
    return hasTags ? row->action + ("-" + std::to_string(tag + 1)) : row->action;
}

std::string windowAction(Command command, int tag)
{
    auto const name = actionName(command, tag);
    return name.empty() ? name : "win." + name;
}

bool canBeChecked(Command command)
{
    return command == Command::showApp || command == Command::checkSpellingWhileTyping;
}

std::string menuPrefix(std::size_t index)
{
    return "menu-" + std::to_string(index);
}

}

MenuBarView::MenuBarView(
    platform::MenuBar& menuBar, Gtk::ApplicationWindow& window, Pictures& pictures, PlatformCommands commands)
    : m_menuBar(menuBar)
    , m_window(window)
    , m_pictures(pictures)
    , m_platformCommands(std::move(commands))
    , m_widget(makeModel())
{
    for (auto const& menu : m_menuBar.menus())
        addActions(menu);
    addChildren();
    showChanges();
    revalidate();
    m_menusConnection = m_menuBar.menusDidChange.connect([this] { showChanges(); });
    m_statesConnection = m_menuBar.statesDidChange.connect([this] { revalidate(); });
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
    auto const name = command ? actionName(*command, item.tag) : std::string();
    if (name.empty())
        return;
    auto const existing = std::ranges::find_if(
        m_entries, [&](Entry const& entry) { return entry.command == *command && entry.tag == item.tag; });
    auto& entry = existing != m_entries.end() ? *existing : m_entries.emplace_back();
    if (item.key && !isTypedIntoPages(*command)) {
        for (auto const& key : accelerators(*item.key))
            entry.accelerators.push_back(key);
    }
    if (entry.action)
        return;

    entry.command = *command;
    entry.tag = item.tag;
    entry.action
        = canBeChecked(*command) ? Gio::SimpleAction::create_bool(name, false) : Gio::SimpleAction::create(name);
    entry.action->signal_activate().connect(
        [this, command = *command, tag = item.tag](Glib::VariantBase const&) { perform(command, tag); });
    m_window.add_action(entry.action);
}

void MenuBarView::perform(Command command, int tag)
{
    if (m_menuBar.perform(command, tag))
        return;
    auto const own = m_platformCommands.find(command);
    if (own == m_platformCommands.end())
        return;
    own->second.perform();
    if (own->second.state)
        revalidate();
}

Glib::RefPtr<Gio::Menu> MenuBarView::makeModel()
{
    auto menus = Gio::Menu::create();
    for (std::size_t index = 0; index < m_menuBar.menus().size(); ++index) {
        auto const& menu = m_menuBar.menus()[index];
        // Opens with Alt and its first letter.
        auto const title = "_" + menu.title;
        if (menu.changes) {
            m_boxes.try_emplace(index, m_pictures);
            menus->append_submenu(title, MenuBox::model(menuPrefix(index)));
        } else {
            menus->append_submenu(
                title, m_models.emplace_back(menu, menuPrefix(index), m_pictures, &windowAction).model());
        }
    }
    return menus;
}

void MenuBarView::addChildren()
{
    for (auto const& model : m_models) {
        for (auto const& child : model.children())
            m_widget.add_child(child.view->widget(), child.id);
    }
    for (auto& [index, box] : m_boxes)
        m_widget.add_child(box.widget(), menuPrefix(index));
}

void MenuBarView::showChanges()
{
    for (auto& [index, box] : m_boxes)
        box.show(m_menuBar.menus()[index]);
}

void MenuBarView::revalidate()
{
    for (auto const& entry : m_entries) {
        auto const state = stateOf(entry.command, entry.tag).value_or(platform::CommandState { .enabled = false });
        entry.action->set_enabled(state.enabled && !state.hidden);
        if (canBeChecked(entry.command))
            entry.action->change_state(state.checked);
    }
    for (auto const& model : m_models) {
        for (auto const& child : model.children()) {
            child.view->setState(
                stateOf(child.command, child.tag).value_or(platform::CommandState { .enabled = false }));
        }
    }
}

std::optional<platform::CommandState> MenuBarView::stateOf(Command command, int tag) const
{
    if (auto const state = m_menuBar.validate(command, tag))
        return state;
    auto const own = m_platformCommands.find(command);
    if (own == m_platformCommands.end())
        return std::nullopt;
    return own->second.state ? own->second.state() : platform::CommandState {};
}

void MenuBarView::setAccelerators(Gtk::Application& application)
{
    for (auto const& entry : m_entries) {
        std::vector<Glib::ustring> const keys(entry.accelerators.begin(), entry.accelerators.end());
        application.set_accels_for_action(windowAction(entry.command, entry.tag), keys);
    }
}

}
