#pragma once

#include <functional>

namespace tarn::platform {

// Whether this computer is on a network.
class NetworkMonitor {
public:
    virtual ~NetworkMonitor() = default;

    virtual bool isAvailable() const = 0;
    // Called after each change of the network, also from one to another; often several times for one event.
    virtual void setOnChange(std::function<void()>) = 0;
};

}
