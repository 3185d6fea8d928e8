#include "Settings/GeneralPane.h"

namespace tarn {

GeneralPane::GeneralPane(platform::LoginItem& loginItem, SafeRendering& safeRendering)
    : m_loginItem(loginItem)
    , m_safeRendering(safeRendering)
{
}

bool GeneralPane::startsAtLogin() const
{
    return m_wanted.value_or(m_loginItem.isEnabled());
}

void GeneralPane::setStartsAtLogin(bool starts)
{
    // One question at a time; the widget shows what is asked for.
    if (m_wanted || starts == startsAtLogin())
        return;
    m_wanted = starts;
    m_loginItem.setEnabled(starts,
        { m_lifetime.guard([this](std::optional<std::string> const& error) {
             m_wanted.reset();
             m_error = error;
             if (onChange)
                 onChange();
         }),
            {} });
}

}
