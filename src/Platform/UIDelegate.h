#pragma once

#include "Platform/NavigationDelegate.h"

namespace tarn::platform {

// What a page asks for that is outside its own view.
class UIDelegate {
public:
    // The page wants the action's URL in a new window. No window is made; the page gets null.
    virtual void requestNewWindow(WebView&, NavigationAction const&) { }

protected:
    ~UIDelegate() = default;
};

}
