#pragma once

#include "Platform/WebView.h"
#include "Support/Lifetime.h"

#include <functional>
#include <string>

namespace tarn {

// The bar below the title bar that finds text in the page that the window shows. It says only whether there is a match;
// the view itself marks it and scrolls to it.
class FindBarController {
public:
    static constexpr char const* placeholder = "Find in page";
    static constexpr char const* notFound = "Not found";

    // Set by the owner: typing is to go to the page again.
    std::function<void(platform::WebView&)> onFocusPage;
    // Set by the widget that draws this.
    std::function<void()> onChange;
    // Typing is to go to the field, all of its text selected.
    std::function<void()> onFocusField;

    // Not kept alive.
    void setWebView(platform::WebView& view) { m_webView = view.weak(); }
    bool serves(platform::WebView const& view) const { return m_webView.lock().get() == &view; }
    bool isVisible() const { return m_visible; }
    // Survives hiding.
    std::string const& text() const { return m_text; }
    std::string const& status() const { return m_status; }

    void show();
    void hide();
    void find(platform::FindDirection);

    // The user edited the field: finds at once.
    void setText(std::string);

private:
    void changed();

    std::weak_ptr<platform::WebView> m_webView;
    std::string m_text;
    std::string m_status;
    bool m_visible { false };
    // Answers from before the bar was hidden are of no interest.
    int m_hidings { 0 };
    Lifetime m_lifetime;
};

}
