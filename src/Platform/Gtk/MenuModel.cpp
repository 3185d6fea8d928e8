#include "Platform/Gtk/MenuModel.h"

#include "Support/Cases.h"

#include <giomm/menuitem.h>
#include <giomm/simpleaction.h>

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

MenuModel::MenuModel(platform::Menu const& menu, std::string const& prefix, CommandAction const& commandAction)
    : m_model(Gio::Menu::create())
    , m_actions(Gio::SimpleActionGroup::create())
{
    auto section = Gio::Menu::create();
    auto const closeSection = [&] {
        if (section->get_n_items() > 0)
            m_model->append_section(section);
        section = Gio::Menu::create();
    };
    for (auto const& entry : menu.entries) {
        std::visit(Cases {
                       [&](platform::MenuItem const& item) { append(*section, item, prefix, commandAction); },
                       [&](platform::Separator) { closeSection(); },
                       [&](platform::Menu const& submenu) {
                           section->append_submenu(
                               plainLabel(submenu.title), MenuModel(submenu, prefix, commandAction).model());
                       },
                   },
            entry);
    }
    closeSection();

    auto const run = Gio::SimpleAction::create_radio_integer("run", m_checked);
    run->signal_activate().connect([closures = m_closures](Glib::VariantBase const& parameter) {
        auto const index = Glib::VariantBase::cast_dynamic<Glib::Variant<gint32>>(parameter).get();
        if (index >= 0 && static_cast<std::size_t>(index) < closures.size())
            closures[static_cast<std::size_t>(index)]();
    });
    m_actions->add_action(run);
}

void MenuModel::append(
    Gio::Menu& section, platform::MenuItem const& item, std::string const& prefix, CommandAction const& commandAction)
{
    if (item.hidden)
        return;
    auto const action = std::visit(
        Cases {
            [&](platform::Command command) { return commandAction ? commandAction(command, item.tag) : std::string(); },
            [&](std::function<void()> const& closure) {
                auto const index = static_cast<int>(m_closures.size());
                m_closures.push_back(closure);
                if (item.checked)
                    m_checked = index;
                return prefix + ".run(" + std::to_string(index) + ")";
            },
        },
        item.action);
    if (action.empty())
        return;
    auto const menuItem = Gio::MenuItem::create(plainLabel(item.title), action);
    // An app that the profile does not use is not offered; other commands are shown greyed.
    if (auto const* const command = std::get_if<platform::Command>(&item.action);
        command && *command == platform::Command::showApp)
        menuItem->set_attribute_value("hidden-when", Glib::Variant<Glib::ustring>::create("action-disabled"));
    section.append_item(menuItem);
}

}
