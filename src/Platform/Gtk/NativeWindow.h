#pragma once

#include "Platform/Window.h"

#include <gtkmm/window.h>

namespace tarn::gtk {

// What every window of this adapter is as well, so that dialogs can hang on it.
class NativeWindow {
public:
    virtual Gtk::Window& native() = 0;

protected:
    ~NativeWindow() = default;
};

// All windows that the core knows are this adapter's.
inline Gtk::Window& nativeOf(platform::Window& window)
{
    return dynamic_cast<NativeWindow&>(window).native();
}

}
