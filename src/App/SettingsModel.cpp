#include "App/SettingsModel.h"

#include <algorithm>

namespace tarn {

std::string_view SettingsModel::rawValue(Tab tab)
{
    return tab == Tab::profiles ? "profiles" : "notifications";
}

std::optional<SettingsModel::Tab> SettingsModel::fromRawValue(std::string_view text)
{
    auto const* const tab = std::ranges::find(allTabs, text, &SettingsModel::rawValue);
    return tab == allTabs.end() ? std::nullopt : std::optional(*tab);
}

void SettingsModel::setTab(Tab tab)
{
    if (tab == m_tab)
        return;
    m_tab = tab;
    if (onChange)
        onChange();
}

}
