#pragma once

#include "Platform/Gtk/Signal.h"
#include "Platform/NetworkMonitor.h"

#include <gio/gio.h>

namespace tarn::gtk {

class NetworkMonitor final : public platform::NetworkMonitor {
public:
    NetworkMonitor()
        : m_onChanged(monitor(), "network-changed", [this](gboolean) {
            if (m_onChange)
                m_onChange();
        })
    {
    }

    bool isAvailable() const override { return g_network_monitor_get_network_available(monitor()); }
    void setOnChange(std::function<void()> onChange) override { m_onChange = std::move(onChange); }

private:
    static GNetworkMonitor* monitor() { return g_network_monitor_get_default(); }

    std::function<void()> m_onChange;
    Signal<void(gboolean)> m_onChanged;
};

}
