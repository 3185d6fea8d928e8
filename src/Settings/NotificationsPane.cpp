#include "Settings/NotificationsPane.h"

#include <utility>

namespace tarn {

NotificationsPane::NotificationsPane(Environment environment, std::function<void()> openGmailSettings)
    : m_environment(environment)
    , m_openGmailSettings(std::move(openGmailSettings))
{
}

std::string_view NotificationsPane::statusText() const
{
    using Status = platform::AuthorizationStatus;
    if (!m_status)
        return "";
    switch (*m_status) {
    case Status::notDetermined:
        return "Not set yet.";
    case Status::denied:
        return "Turned off. Tarn cannot show notifications until they are allowed.";
    case Status::authorized:
    case Status::provisional:
        return "Allowed on this Mac.";
    }
    return "";
}

void NotificationsPane::didAppear()
{
    // The user may come back from the desktop's settings.
    m_activeConnection = m_environment.activation.didBecomeActive.connect([this] { refresh(); });
    refresh();
}

void NotificationsPane::didDisappear()
{
    m_activeConnection = {};
}

void NotificationsPane::refresh()
{
    if (!m_environment.center)
        return;
    m_environment.center->authorization(m_lifetime.guard([this](platform::Authorization const& authorization) {
        if (std::exchange(m_status, authorization.status) != authorization.status && onChange)
            onChange();
    }));
}

}
