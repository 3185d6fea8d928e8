#pragma once

#include "Platform/DockTile.h"

#include <giomm/dbusconnection.h>

#include <string>

namespace tarn::gtk {

// The launcher entry protocol of docks and task bars (com.canonical.Unity.LauncherEntry). Without a session bus, or a
// dock that listens, nothing happens.
class DockTile final : public platform::DockTile {
public:
    DockTile(Glib::RefPtr<Gio::DBus::Connection>, std::string applicationId);
    ~DockTile() override;

    bool isShown() const override { return m_isShown; }
    void setOnShownChange(std::function<void()> onShownChange) override { m_onShownChange = std::move(onShownChange); }
    void setBadge(std::optional<std::int64_t>) override;
    void setProgress(std::optional<platform::DockProgressBar>) override;

private:
    void dockChanged(bool isThere);
    void send() const;

    Glib::RefPtr<Gio::DBus::Connection> m_bus;
    std::string m_applicationId;
    std::function<void()> m_onShownChange;
    bool m_isShown { false };
    std::optional<std::int64_t> m_badge;
    // In percent: a dock shows no more, and need not be told.
    std::optional<int> m_progress;
    unsigned m_watch { 0 };
};

}
