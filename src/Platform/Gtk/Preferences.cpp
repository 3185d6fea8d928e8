#include "Platform/Gtk/Preferences.h"

#include <algorithm>

namespace tarn::gtk {

namespace {

constexpr int margin = 24;
constexpr int spacing = 12;
constexpr int lineLength = 60; // characters

// How much larger than usual the user wants texts; pages grow with them.
double textScale()
{
    constexpr double usual = 96 * 1024;
    constexpr double most = 2;
    int resolution = -1;
    g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &resolution, nullptr);
    return std::clamp(resolution / usual, 1.0, most);
}

}

Gtk::Box* makePage(int width)
{
    auto* const page = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, spacing);
    page->set_margin(margin);
    page->set_size_request(static_cast<int>(width * textScale()) - 2 * margin, -1);
    page->set_valign(Gtk::Align::START);
    return page;
}

AdwPreferencesGroup* makeGroup()
{
    return ADW_PREFERENCES_GROUP(adw_preferences_group_new());
}

AdwActionRow* makeRow(std::string const& title, Mnemonic mnemonic)
{
    auto* const row = ADW_PREFERENCES_ROW(adw_action_row_new());
    // Before the title, which would be read as markup.
    adw_preferences_row_set_use_markup(row, FALSE);
    adw_preferences_row_set_use_underline(row, mnemonic == Mnemonic::yes);
    adw_preferences_row_set_title(row, title.c_str());
    return ADW_ACTION_ROW(row);
}

Gtk::Label* makeText(std::string_view text)
{
    auto* const label = Gtk::make_managed<Gtk::Label>(std::string(text));
    label->set_wrap();
    label->set_xalign(0);
    // Decides on how high a window is that follows its content.
    label->set_max_width_chars(lineLength);
    label->set_hexpand();
    return label;
}

Gtk::Label* makeFootnote(std::string_view text)
{
    auto* const label = makeText(text);
    label->add_css_class("caption");
    label->add_css_class("dim-label");
    label->set_margin_start(spacing);
    label->set_margin_end(spacing);
    return label;
}

std::string marked(std::string_view title, char letter)
{
    std::string result(title);
    if (auto const at = result.find(letter); at != std::string::npos)
        result.insert(at, 1, '_');
    return result;
}

void setTitle(Gtk::Button& button, std::string_view title, char letter)
{
    button.set_label(marked(title, letter));
    button.set_use_underline();
    // The toolkit tells a screen reader the title with its mark, and then the title once more.
    gtk_accessible_reset_property(GTK_ACCESSIBLE(button.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL);
}

}
