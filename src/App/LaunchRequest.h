#pragma once

#include "App/Rendering.h"

#include <string>
#include <vector>

namespace tarn {

// What one start of the program asks for. A second start hands its request to the running one.
struct LaunchRequest {
    enum class Window {
        show,
        // At log-in: everything runs, nothing is seen. Nothing at all for an application that runs.
        leaveHidden,
    };

    Window window { Window::show };
    // Of a start that finds no running instance.
    Rendering rendering { Rendering::detected };
    // Name of the profile to work in; empty for the active one.
    std::string profile {};
    // One of NewItem::names, or empty.
    std::string newItem {};
    // Byte for byte as they were given.
    std::vector<std::string> urls {};

    friend bool operator==(LaunchRequest const&, LaunchRequest const&) = default;
};

}
