#pragma once

#include "Apps/GoogleApp.h"
#include "Platform/Menu.h"

#include <array>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tarn {

struct SidebarButton {
    GoogleApp app;
    bool isVisible { true };
    bool isActive { false };
    bool showsDot { false };

    friend bool operator==(SidebarButton const&, SidebarButton const&) = default;
};

struct ProfileButton {
    std::string tooltip { "Switch profile" };
    std::string accessibilityLabel { "Profiles" };
    // Picture file; without one a person symbol is drawn.
    std::optional<std::filesystem::path> image {};
    bool isMenuOpen { false };

    friend bool operator==(ProfileButton const&, ProfileButton const&) = default;
};

// The narrow strip at the left of the main window: one button per app, the settings button and the profile button.
// It is told what to show and reports clicks.
class SidebarView {
public:
    static constexpr std::string_view settingsTitle = "Settings";
    static constexpr platform::KeyEquivalent settingsKey { U',' };

    SidebarView();
    SidebarView(SidebarView const&) = delete;
    SidebarView& operator=(SidebarView const&) = delete;

    // Set by the owner.
    std::function<void(GoogleApp)> onSelectApp;
    std::function<void()> onSettings;
    std::function<void()> onProfile;
    // Set by the widget that draws this; not called when nothing changed.
    std::function<void()> onChange;

    void setEnabledApps(std::set<GoogleApp> const&);
    void setActive(std::optional<GoogleApp>);
    void setUnread(bool);
    void setProfile(std::string const& name, std::optional<std::filesystem::path> image);
    // Opens the menu beside the profile button; to be called from onProfile.
    void popUpProfileMenu(platform::Menu);

    // In catalogue order; a hidden button keeps its state.
    std::array<SidebarButton, GoogleApp::allCases.size()> const& appButtons() const { return m_appButtons; }
    ProfileButton const& profileButton() const { return m_profileButton; }
    // The menu that is open, if any.
    std::optional<platform::Menu> const& profileMenu() const { return m_profileMenu; }

    // What the user did, reported by the widget.
    void clickApp(std::string_view identifier);
    void clickSettings();
    void clickProfile();
    void profileMenuDidClose();

private:
    SidebarButton& button(GoogleApp app) { return m_appButtons[app.position()]; }
    template <typename Change> void change(Change);

    std::array<SidebarButton, GoogleApp::allCases.size()> m_appButtons;
    ProfileButton m_profileButton;
    std::optional<platform::Menu> m_profileMenu;
};

}
