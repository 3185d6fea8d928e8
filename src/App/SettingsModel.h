#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string_view>

namespace tarn {

// Which tab of the settings window is selected.
class SettingsModel {
public:
    enum class Tab { profiles, notifications };

    // In the order of the window.
    static constexpr std::array allTabs { Tab::profiles, Tab::notifications };
    static std::string_view rawValue(Tab);
    // The whole string, case-sensitive.
    static std::optional<Tab> fromRawValue(std::string_view);

    // Set by the widget that draws this; not called when nothing changed.
    std::function<void()> onChange;

    Tab tab() const { return m_tab; }
    void setTab(Tab);

private:
    Tab m_tab { Tab::profiles };
};

}
