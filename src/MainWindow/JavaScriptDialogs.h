#pragma once

#include "Platform/Panels.h"
#include "Platform/WebView.h"

#include <map>
#include <optional>
#include <string>
#include <variant>

namespace tarn {

// Shows a page's alert, confirm and prompt as alerts that hang on its view. From the second one of a page on, the user
// can stop that page from asking; it is then answered at once, as by a user who cancels.
class JavaScriptDialogs {
public:
    static constexpr char const* stopAsking = "Stop this page from showing more dialogs";

    // The panels outlive this.
    explicit JavaScriptDialogs(platform::Panels& panels)
        : m_panels(panels)
    {
    }

    void alert(std::string const& message, platform::WebView&, Reply<std::monostate>);
    void confirm(std::string const& message, platform::WebView&, Reply<bool>);
    void prompt(std::string const& text, std::optional<std::string> const& defaultText, platform::WebView&,
        Reply<std::optional<std::string>>);
    // Whether the page may be left.
    void confirmLeaving(platform::WebView&, Reply<bool>);

    // The view has another page, or none: what its last one asked is over.
    void pageEnded(platform::WebView&);

private:
    struct Page {
        std::weak_ptr<platform::WebView> view;
        int asked { 0 };
        bool mayAsk { true };
    };

    void present(platform::Alert, platform::WebView&, Reply<platform::AlertResponse>);

    platform::Panels& m_panels;
    // The pages that have asked.
    std::map<platform::WebView const*, std::shared_ptr<Page>> m_pages;
};

}
