#pragma once

#include "Support/Url.h"

namespace tarn::platform {

// The desktop around the application.
class Workspace {
public:
    virtual ~Workspace() = default;

    // Hands the URL to the registered handler of its scheme (the default browser for web addresses), never to a shell.
    // Returns at once; a URL without a handler is logged.
    virtual void open(Url const&) = 0;
};

}
