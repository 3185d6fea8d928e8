#include "Platform/Gtk/NoticeView.h"

#include <gtkmm/image.h>
#include <gtkmm/label.h>

namespace tarn::gtk {

NoticeView::NoticeView(platform::PageNotice const& notice)
    : Gtk::Box(Gtk::Orientation::VERTICAL, 12)
    , m_button(Gtk::make_managed<Gtk::Button>(notice.button))
{
    set_valign(Gtk::Align::CENTER);
    set_halign(Gtk::Align::CENTER);
    set_margin(32);

    auto* const image = Gtk::make_managed<Gtk::Image>();
    image->set_from_icon_name("dialog-warning-symbolic");
    image->set_pixel_size(64);
    image->add_css_class("dim-label");
    append(*image);

    auto* const title = Gtk::make_managed<Gtk::Label>(notice.title);
    title->add_css_class("title-1");
    title->set_wrap();
    append(*title);

    // Addresses and reasons come from elsewhere: plain text, cut where it would not fit.
    auto* const text = Gtk::make_managed<Gtk::Label>(notice.text);
    text->set_wrap();
    text->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    text->set_justify(Gtk::Justification::CENTER);
    text->set_max_width_chars(70);
    text->set_lines(12);
    text->set_ellipsize(Pango::EllipsizeMode::END);
    text->set_selectable();
    // Else it would take the focus of a new window, all selected.
    text->set_focusable(false);
    append(*text);

    auto* const buttons = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
    buttons->set_halign(Gtk::Align::CENTER);
    buttons->set_margin_top(12);
    append(*buttons);
    m_button->add_css_class("pill");
    m_button->add_css_class("suggested-action");
    m_button->signal_clicked().connect(notice.onButton);
    buttons->append(*m_button);
    if (notice.secondButton.empty())
        return;
    auto* const second = Gtk::make_managed<Gtk::Button>(notice.secondButton);
    second->add_css_class("pill");
    second->signal_clicked().connect(notice.onSecondButton);
    buttons->append(*second);
}

}
