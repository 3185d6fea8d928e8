#include "Platform/Gtk/MenuModel.h"

#include "Platform/Gtk/KeyLabels.h"
#include "Support/Cases.h"

#include <giomm/menuitem.h>

#include <utility>

namespace tarn::gtk {

namespace {

// An underscore would be taken for the mark of a mnemonic.
std::string plainLabel(std::string const& title)
{
    std::string label;
    for (char const character : title) {
        label += character;
        if (character == '_')
            label += '_';
    }
    return label;
}

}

MenuModel::MenuModel(
    platform::Menu const& menu, std::string prefix, Pictures& pictures, CommandAction const& commandAction)
    : m_prefix(std::move(prefix))
    , m_pictures(pictures)
    , m_model(Gio::Menu::create())
{
    append(*m_model, menu, commandAction);
}

void MenuModel::append(Gio::Menu& model, platform::Menu const& menu, CommandAction const& commandAction)
{
    auto section = Gio::Menu::create();
    auto const closeSection = [&] {
        if (section->get_n_items() > 0)
            model.append_section(section);
        section = Gio::Menu::create();
    };
    for (auto const& entry : menu.entries) {
        std::visit(Cases {
                       [&](platform::MenuItem const& item) { append(*section, item, commandAction); },
                       [&](platform::Separator) { closeSection(); },
                       [&](platform::Menu const& submenu) {
                           auto const submodel = Gio::Menu::create();
                           append(*submodel, submenu, commandAction);
                           section->append_submenu(plainLabel(submenu.title), submodel);
                       },
                   },
            entry);
    }
    closeSection();
}

void MenuModel::append(Gio::Menu& section, platform::MenuItem const& item, CommandAction const& commandAction)
{
    auto const* const command = std::get_if<platform::Command>(&item.action);
    auto const action = command && !item.hidden ? commandAction(*command, item.tag) : std::string();
    if (action.empty())
        return;
    auto const menuItem = Gio::MenuItem::create(plainLabel(item.title), action);
    if (!item.icon.empty() || item.avatar) {
        auto const id = m_prefix + "-" + std::to_string(m_children.size());
        menuItem->set_attribute_value("custom", Glib::Variant<Glib::ustring>::create(id));
        m_children.push_back({ id, *command, item.tag, std::make_unique<MenuItemView>(item, action, m_pictures) });
    } else if (isTypedIntoPages(*command) && item.key) {
        // No accelerator says it: the page has the key.
        menuItem->set_attribute_value("accel", Glib::Variant<Glib::ustring>::create(accelerators(*item.key).front()));
    }
    section.append_item(menuItem);
}

}
