#pragma once

#include <sigc++/signal.h>

namespace tarn::platform {

// The application among the others on the desktop.
class Activation {
public:
    virtual ~Activation() = default;

    // One of its windows got the keyboard, after none had it.
    sigc::signal<void()> didBecomeActive;

    // One of its windows has the keyboard.
    virtual bool isActive() const = 0;
    // Brings it to the front.
    virtual void activate() = 0;
};

}
