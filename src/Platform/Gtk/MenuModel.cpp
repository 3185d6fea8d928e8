#include "Platform/Gtk/MenuModel.h"

#include "Platform/Gtk/KeyLabels.h"
#include "Support/Cases.h"

#include <giomm/menuitem.h>
#include <giomm/simpleaction.h>

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
    , m_actions(Gio::SimpleActionGroup::create())
{
    append(*m_model, menu, commandAction);

    auto const run = Gio::SimpleAction::create("run", Glib::VARIANT_TYPE_INT32);
    run->signal_activate().connect([closures = m_closures](Glib::VariantBase const& parameter) {
        auto const index = Glib::VariantBase::cast_dynamic<Glib::Variant<gint32>>(parameter).get();
        if (index >= 0 && static_cast<std::size_t>(index) < closures.size())
            closures[static_cast<std::size_t>(index)]();
    });
    m_actions->add_action(run);
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

std::string MenuModel::actionFor(platform::MenuItem const& item, CommandAction const& commandAction)
{
    return std::visit(
        Cases {
            [&](platform::Command command) { return commandAction ? commandAction(command, item.tag) : std::string(); },
            [&](std::function<void()> const& closure) {
                auto const index = static_cast<int>(m_closures.size());
                m_closures.push_back(closure);
                return m_prefix + ".run(" + std::to_string(index) + ")";
            },
        },
        item.action);
}

void MenuModel::append(Gio::Menu& section, platform::MenuItem const& item, CommandAction const& commandAction)
{
    if (item.hidden)
        return;
    auto const action = actionFor(item, commandAction);
    if (action.empty())
        return;
    auto const menuItem = Gio::MenuItem::create(plainLabel(item.title), action);
    if (!item.icon.empty() || item.avatar) {
        auto const id = m_prefix + "-" + std::to_string(m_children.size());
        menuItem->set_attribute_value("custom", Glib::Variant<Glib::ustring>::create(id));
        m_children.push_back({ id, item.action, item.tag, std::make_unique<MenuItemView>(item, action, m_pictures) });
    } else if (auto const* const command = std::get_if<platform::Command>(&item.action);
               command && isTypedIntoPages(*command) && item.key) {
        // No accelerator says it: the page has the key.
        menuItem->set_attribute_value("accel", Glib::Variant<Glib::ustring>::create(accelerators(*item.key).front()));
    }
    section.append_item(menuItem);
}

}
