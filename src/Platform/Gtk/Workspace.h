#pragma once

#include "Platform/Gtk/RunLoop.h"
#include "Platform/Workspace.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

namespace tarn::gtk {

class Workspace final : public platform::Workspace {
public:
    // The identifier is the desktop file's name without its ending.
    Workspace(std::string const& applicationId, RunLoop& runLoop, Log log)
        : m_desktopFile(applicationId + ".desktop")
        , m_runLoop(runLoop)
        , m_log(std::move(log))
    {
    }

    void open(Url const&) override;
    void openFile(std::filesystem::path const&) override;
    void reveal(std::filesystem::path const&) override;
    bool isDefaultHandler(std::string const& scheme) const override;
    void setDefaultHandler(std::string const& scheme, Reply<std::optional<std::string>>) override;
    void openNotificationSettings() override;

private:
    std::string m_desktopFile;
    RunLoop& m_runLoop;
    Log m_log;
    Lifetime m_lifetime;
};

}
