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
    auto const changed = std::ranges::mismatch(m_entries, menu.entries, looksLike).in2 - menu.entries.begin();
    auto const kept = static_cast<std::size_t>(changed);
    m_entries = menu.entries;
    for (; m_rows.size() > kept; m_rows.pop_back()) {
        if (auto* const row = m_rows.back().widget)
            m_box.remove(*row);
    }
    for (auto index = kept; index < m_entries.size(); ++index) {
        m_rows.push_back(makeRow(index));
        if (auto* const row = m_rows.back().widget)
            m_box.append(*row);
    }
}

MenuBox::Row MenuBox::makeRow(std::size_t index)
{
    return std::visit(Cases {
                          [&](platform::MenuItem const& item) -> Row {
                              auto view = std::make_unique<MenuItemView>(
                                  item, [this, index] { run(index); }, m_pictures);
                              auto& widget = view->widget();
                              return { std::move(view), &widget };
                          },
                          [](platform::Separator) -> Row {
                              return { nullptr, Gtk::make_managed<Gtk::Separator>() };
                          },
                          [](platform::Menu const&) -> Row { return {}; },
                      },
        m_entries[index]);
}

void MenuBox::run(std::size_t index)
{
    // A copy: it may replace the entries.
    auto const item = std::get<platform::MenuItem>(m_entries.at(index));
    if (auto const* const closure = std::get_if<std::function<void()>>(&item.action))
        (*closure)();
}

}
