#include "Platform/Gtk/SidebarView.h"

#include "Platform/Gtk/Accessible.h"
#include "Platform/Gtk/KeyLabels.h"

#include <glibmm/main.h>
#include <gtkmm/image.h>
#include <gtkmm/overlay.h>
#include <gtkmm/scrolledwindow.h>

namespace tarn::gtk {

namespace {

constexpr int buttonSize = 40;
constexpr int iconSize = 20;
constexpr int buttonSpacing = 12;
constexpr int topMargin = 12;
constexpr int bottomMargin = 16;
constexpr int dotMargin = 4;
constexpr int profileSize = 36;
constexpr int avatarSize = 32;
constexpr int noPictureSize = 28;
constexpr int menuDistance = 4;
constexpr char const* menuID = "profiles";

void makeSidebarButton(Gtk::Button& button, std::string const& icon, std::string const& title, std::string const& key)
{
    auto* const image = Gtk::make_managed<Gtk::Image>();
    image->set_from_icon_name(icon);
    image->set_pixel_size(iconSize);
    button.set_child(*image);
    button.set_size_request(buttonSize, buttonSize);
    button.set_halign(Gtk::Align::CENTER);
    button.set_has_frame(false);
    // A click leaves the focus in the page.
    button.set_focus_on_click(false);
    button.add_css_class("sidebar-button");
    button.set_tooltip_text(title + " (" + key + ")");
    setAccessibleLabel(button, title);
}

}

class AppButton final : public Gtk::Button {
public:
    explicit AppButton(GoogleApp app)
    {
        makeSidebarButton(*this, std::string(app.iconName()), std::string(app.title()),
            keyLabel(platform::KeyEquivalent { U'0' + static_cast<char32_t>(app.shortcutNumber()) }));
        m_dot.add_css_class("unread-dot");
        m_dot.set_halign(Gtk::Align::END);
        m_dot.set_valign(Gtk::Align::START);
        m_dot.set_margin_end(dotMargin);
        m_dot.set_margin_top(dotMargin);
        m_dot.set_can_target(false);

        auto* const image = get_child();
        image->reference();
        unset_child();
        m_overlay.set_child(*image);
        image->unreference();
        m_overlay.add_overlay(m_dot);
        set_child(m_overlay);
    }

    void render(SidebarButton const& state)
    {
        set_visible(state.isVisible);
        m_dot.set_visible(state.showsDot);
        if (state.isActive)
            add_css_class("active");
        else
            remove_css_class("active");
    }

private:
    Gtk::Overlay m_overlay;
    Gtk::Box m_dot;
};

SidebarView::SidebarView(tarn::SidebarView& sidebar, Pictures& pictures, int width)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_sidebar(sidebar)
    , m_avatar(pictures, noPictureSize)
    , m_menuBox(pictures)
{
    add_css_class("tarn-sidebar");
    set_size_request(width, -1);
    set_hexpand(false);

    auto* const stack = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, buttonSpacing);
    stack->set_margin_top(topMargin);
    for (auto const& state : m_sidebar.appButtons()) {
        auto* const button = Gtk::make_managed<AppButton>(state.app);
        button->signal_clicked().connect([this, app = state.app] { m_sidebar.clickApp(app.rawValue()); });
        stack->append(*button);
        m_appButtons.push_back(button);
    }
    // A window too low for all buttons scrolls them, without a bar.
    auto* const scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::EXTERNAL);
    scroller->set_vexpand();
    scroller->set_margin_bottom(buttonSpacing);
    scroller->set_child(*stack);
    append(*scroller);

    makeSidebarButton(m_settingsButton, "tarn-settings-symbolic", std::string(tarn::SidebarView::settingsTitle),
        keyLabel(tarn::SidebarView::settingsKey));
    m_settingsButton.signal_clicked().connect([this] { m_sidebar.clickSettings(); });
    m_settingsButton.set_margin_bottom(buttonSpacing);
    append(m_settingsButton);

    m_profileButton.set_child(m_avatar);
    m_profileButton.set_has_frame(false);
    m_profileButton.set_focus_on_click(false);
    m_profileButton.set_size_request(profileSize, profileSize);
    m_profileButton.set_halign(Gtk::Align::CENTER);
    m_profileButton.set_margin_bottom(bottomMargin);
    m_profileButton.add_css_class("profile-button");
    m_profileButton.signal_clicked().connect([this] { m_sidebar.clickProfile(); });
    append(m_profileButton);

    m_sidebar.onChange = [this] { render(); };
    render();
}

SidebarView::~SidebarView()
{
    m_sidebar.onChange = nullptr;
    if (m_menu)
        m_menu->unparent();
}

void SidebarView::render()
{
    for (std::size_t position = 0; position < m_appButtons.size(); ++position)
        m_appButtons[position]->render(m_sidebar.appButtons()[position]);
    renderProfile();
}

void SidebarView::renderProfile()
{
    auto const& profile = m_sidebar.profileButton();
    m_profileButton.set_tooltip_text(profile.tooltip);
    setAccessibleLabel(m_profileButton, profile.accessibilityLabel);
    m_avatar.show({ .image = profile.image, .size = avatarSize });
    if (profile.isMenuOpen) {
        m_profileButton.add_css_class("menu-open");
        if (auto const& menu = m_sidebar.profileMenu(); menu && !m_isMenuUp)
            openProfileMenu(*menu);
    } else {
        m_profileButton.remove_css_class("menu-open");
    }
}

void SidebarView::makeProfileMenu()
{
    m_menu = std::make_unique<Gtk::PopoverMenu>(MenuBox::model(menuID));
    m_menu->add_child(m_menuBox.widget(), menuID);
    m_menu->set_parent(m_profileButton);
    m_menu->set_position(Gtk::PositionType::RIGHT);
    m_menu->set_offset(menuDistance, 0);
    m_menu->set_has_arrow(false);
    m_menu->signal_closed().connect([this] {
        // The chosen item's closure runs after this: until then the menu counts as open.
        Glib::signal_idle().connect_once(m_lifetime.guard([this] {
            m_isMenuUp = false;
            m_sidebar.profileMenuDidClose();
        }));
    });
}

void SidebarView::openProfileMenu(platform::Menu const& menu)
{
    if (!m_menu)
        makeProfileMenu();
    m_isMenuUp = true;
    m_menuBox.show(menu);
    m_menu->popup();
}

}
