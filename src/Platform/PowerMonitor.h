#pragma once

#include <functional>

namespace tarn::platform {

// Sleep and waking of this computer.
class PowerMonitor {
public:
    virtual ~PowerMonitor() = default;

    // Called each time the computer has woken up; its network may not be there yet.
    virtual void setOnResume(std::function<void()>) = 0;
};

}
