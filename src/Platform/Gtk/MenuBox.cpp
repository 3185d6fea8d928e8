#include "Platform/Gtk/MenuBox.h"

#include "Support/Cases.h"

#include <giomm/menuitem.h>
#include <gtkmm/separator.h>

#include <algorithm>

namespace tarn::gtk {

namespace {

bool looksLike(platform::MenuEntry const& one, platform::MenuEntry const& other)
{
    auto const* const item = std::get_if<platform::MenuItem>(&one);
    auto const* const otherItem = std::get_if<platform::MenuItem>(&other);
    if (!item || !otherItem)
        return one.index() == other.index();
    return item->title == otherItem->title && item->checked == otherItem->checked && item->icon == otherItem->icon
        && item->avatar == otherItem->avatar;
}

}

MenuBox::MenuBox(Pictures& pictures)
    : m_pictures(pictures)
{
}

Glib::RefPtr<Gio::Menu> MenuBox::model(std::string const& id)
{
    auto const item = Gio::MenuItem::create("", "");
    item->set_attribute_value("custom", Glib::Variant<Glib::ustring>::create(id));
    auto menu = Gio::Menu::create();
    menu->append_item(item);
    return menu;
}

void MenuBox::show(platform::Menu const& menu)
{
    bool const looksTheSame = std::ranges::equal(m_entries, menu.entries, looksLike);
    m_entries = menu.entries;
    if (looksTheSame)
        return;
    while (auto* const child = m_box.get_first_child())
        m_box.remove(*child);
    m_views.clear();
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        std::visit(Cases {
                       [&](platform::MenuItem const& item) {
                           m_views.push_back(std::make_unique<MenuItemView>(
                               item, [this, index] { run(index); }, m_pictures));
                           m_box.append(m_views.back()->widget());
                       },
                       [&](platform::Separator) { m_box.append(*Gtk::make_managed<Gtk::Separator>()); },
                       [](platform::Menu const&) {},
                   },
            m_entries[index]);
    }
}

void MenuBox::run(std::size_t index)
{
    // A copy: it may replace the entries.
    auto const item = std::get<platform::MenuItem>(m_entries.at(index));
    if (auto const* const closure = std::get_if<std::function<void()>>(&item.action))
        (*closure)();
}

}
