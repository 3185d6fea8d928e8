#pragma once

#include <functional>

namespace tarn::platform {

class WebView;

// Size of the window's content, in points, when it is not maximised.
struct WindowFrame {
    int width { 0 };
    int height { 0 };
    bool maximized { false };

    friend bool operator==(WindowFrame const&, WindowFrame const&) = default;
};

// A window on the screen. Dialogs hang on it.
class Window {
public:
    Window() = default;
    Window(Window const&) = delete;
    Window& operator=(Window const&) = delete;
    virtual ~Window() = default;

    // Shows it if it is hidden, raises it and makes it the active window.
    virtual void present() = 0;
    virtual bool isVisible() const = 0;
};

// The window that shows one of several web views. Closing it hides it.
class WebWindow : public Window {
public:
    // The one view in the content area, or none. The view must be taken out before it ends.
    virtual void setContent(WebView*) = 0;
    // Typing goes to the view from now on.
    virtual void focus(WebView&) = 0;

    virtual void setOnFrameChange(std::function<void(WindowFrame)>) = 0;
};

}
