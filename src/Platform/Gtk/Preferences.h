#pragma once

#include <adwaita.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include <string>
#include <string_view>

namespace tarn::gtk {

// The parts of a settings page, as this desktop draws them. All texts are plain.

// A page: groups below one another, of a width at the usual size of texts.
Gtk::Box* makePage(int width);

// Owned by what it is put into.
AdwPreferencesGroup* makeGroup();

// A row of a list. An underscore marks the letter that chooses it when a mnemonic is wanted.
enum class Mnemonic { no, yes };
AdwActionRow* makeRow(std::string const& title, Mnemonic = Mnemonic::no);

// A wrapping text of its own, or below a group.
Gtk::Label* makeText(std::string_view);
Gtk::Label* makeFootnote(std::string_view);

// The title with a mark before that letter, which is then its mnemonic.
std::string marked(std::string_view title, char letter);
void setTitle(Gtk::Button&, std::string_view title, char letter);

}
