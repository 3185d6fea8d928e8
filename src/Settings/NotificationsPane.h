#pragma once

#include "Platform/Activation.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Workspace.h"
#include "Support/Lifetime.h"
#include "Support/ScopedConnection.h"

#include <functional>
#include <optional>
#include <string_view>

namespace tarn {

// The settings' page about the two switches that notifications of new mail need: the desktop's and Gmail's own. While
// it is shown it knows what the desktop allows.
class NotificationsPane {
public:
    // One switch: what it is, the button that leads there, and the way to it in words.
    struct Step {
        std::string_view label;
        std::string_view button;
        std::string_view footer;
    };
    static constexpr std::string_view introduction
        = "To get macOS notifications for new mail, allow notifications for Tarn and turn on New mail notifications in "
          "Gmail. Gmail keeps that setting per account, so turn it on in each profile.";
    static constexpr Step desktopStep { "1. Allow notifications for Tarn", "Open System Settings",
        "System Settings > Notifications > Tarn > Allow Notifications." };
    static constexpr Step gmailStep { "2. Turn on New mail notifications in Gmail", "Open Gmail Settings",
        "Gmail Settings > General > Desktop notifications > New mail notifications on. Then click Save Changes at the "
        "bottom of the page." };

    struct Environment {
        platform::Workspace& workspace;
        platform::Activation& activation;
        // None where the application notifies nobody; the status then stays unknown.
        platform::NotificationCenter* center { nullptr };
    };

    NotificationsPane(Environment, std::function<void()> openGmailSettings);
    NotificationsPane(NotificationsPane const&) = delete;
    NotificationsPane& operator=(NotificationsPane const&) = delete;

    // Set by the widget that draws this; not called when nothing changed.
    std::function<void()> onChange;

    // Empty before the first answer.
    std::string_view statusText() const;

    // The page comes and goes.
    void didAppear();
    void didDisappear();
    void openSystemSettings() { m_environment.workspace.openNotificationSettings(); }
    void openGmailSettings() { m_openGmailSettings(); }

private:
    void refresh();

    Environment m_environment;
    std::function<void()> m_openGmailSettings;
    std::optional<platform::AuthorizationStatus> m_status;
    ScopedConnection m_activeConnection;
    Lifetime m_lifetime;
};

}
