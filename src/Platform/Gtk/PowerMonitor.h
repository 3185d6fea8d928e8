#pragma once

#include "Platform/Gtk/BusSignal.h"
#include "Platform/PowerMonitor.h"

namespace tarn::gtk {

// What logind says on the system bus. Without that bus nothing is ever said.
class PowerMonitor final : public platform::PowerMonitor {
public:
    PowerMonitor();
    ~PowerMonitor() override;

    void setOnResume(std::function<void()> onResume) override { m_onResume = std::move(onResume); }

private:
    std::function<void()> m_onResume;
    Ref<GCancellable> m_cancellable;
    BusSignal m_prepareForSleep;
};

}
