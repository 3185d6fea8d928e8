#pragma once

#include "Platform/Menu.h"
#include "Platform/Panels.h"
#include "Platform/Workspace.h"
#include "Support/Lifetime.h"

#include <functional>

namespace tarn {

// Answers "Set as Default Email App".
class DefaultEmailApp final : public platform::CommandReceiver {
public:
    DefaultEmailApp(platform::Workspace&, platform::Panels&);

    bool isDefaultEmailApp() const;
    // Only a failure is shown.
    void setDefaultEmailApp();

    // Set by the owner: the answer of isDefaultEmailApp() may have changed.
    std::function<void()> onChange;

    bool perform(platform::Command, int tag) override;
    std::optional<platform::CommandState> validate(platform::Command, int tag) const override;

private:
    platform::Workspace& m_workspace;
    platform::Panels& m_panels;
    Lifetime m_lifetime;
};

}
