#include "App/DefaultEmailApp.h"

namespace tarn {

using platform::Command;
using platform::CommandState;

namespace {

constexpr char const* scheme = "mailto";

}

DefaultEmailApp::DefaultEmailApp(platform::Workspace& workspace, platform::Panels& panels)
    : m_workspace(workspace)
    , m_panels(panels)
{
}

bool DefaultEmailApp::isDefaultEmailApp() const
{
    return m_workspace.isDefaultHandler(scheme);
}

void DefaultEmailApp::setDefaultEmailApp()
{
    m_workspace.setDefaultHandler(scheme,
        Reply<std::optional<std::string>>(m_lifetime.guard([this](std::optional<std::string> const& error) {
            if (onChange)
                onChange();
            if (!error)
                return;
            m_panels.showAlert(
                {
                    .message = "Tarn could not become the default email app",
                    .informativeText = *error,
                    .buttons = { { .title = "OK", .role = platform::ButtonRole::cancel } },
                },
                {}, Reply<platform::AlertResponse>([](auto const&) {}, {}));
        }),
            std::nullopt));
}

bool DefaultEmailApp::perform(Command command, int)
{
    if (command != Command::setDefaultEmailApp)
        return false;
    setDefaultEmailApp();
    return true;
}

std::optional<CommandState> DefaultEmailApp::validate(Command command, int) const
{
    if (command != Command::setDefaultEmailApp)
        return std::nullopt;
    return CommandState { .enabled = !isDefaultEmailApp() };
}

}
