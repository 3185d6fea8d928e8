#pragma once

#include <functional>
#include <string>

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
    // As task bars and switchers of windows show it. Any text.
    virtual void setTitle(std::string const&) = 0;

    virtual void setOnFrameChange(std::function<void(WindowFrame)>) = 0;
};

// Where the page of a window comes from, as its title bar shows it.
struct PageOrigin {
    enum class Connection { none, secure, insecure };
    // The host, in ASCII; of a page without one, its address.
    std::string text;
    Connection connection { Connection::none };

    friend bool operator==(PageOrigin const&, PageOrigin const&) = default;
};

// The window of one web view. It is made hidden.
class PopupWindow : public Window {
public:
    // In points; more than the screen has is cut. For a window that has not been shown yet.
    virtual void setContentSize(int width, int height) = 0;
    // Any text.
    virtual void setTitle(std::string const&) = 0;
    virtual void setOrigin(PageOrigin const&) = 0;

    // As if the user closed it.
    virtual void close() = 0;
    // Called once, when the window has gone from the screen. It must not end in the call.
    virtual void setOnClose(std::function<void()>) = 0;
};

}
