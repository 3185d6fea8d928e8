#pragma once

#include "Platform/UserContentController.h"
#include "Platform/WebView.h"

#include <string_view>

namespace tarn {

// Brings a page's window.print() to the application. Frames keep their own.
class PrintBridge {
public:
    static constexpr char const* handlerName { "tarnPrint" };

    // For document start, in the main frame only.
    static std::string_view script();
    static void install(platform::UserContentController&);
    static void print(platform::WebView& view) { view.print(); }
};

}
