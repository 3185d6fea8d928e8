#pragma once

#include "Platform/Gtk/Signal.h"
#include "Platform/WebView.h"

#include <webkit/webkit.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace tarn::gtk {

// Finds text in the pages of one view. The engine does not say which search an answer belongs to: they go one by one.
class PageFind {
public:
    explicit PageFind(WebKitWebView*);

    void find(std::string const& text, platform::FindOptions const&, std::function<void(bool found)> completion);
    void end();
    // The page is gone; what has not been found in it will not be.
    void pageEnded();

private:
    struct Search {
        std::string text;
        platform::FindOptions options;
        std::vector<std::function<void(bool)>> completions;
    };

    void start();
    void answer(bool found);

    WebKitWebView* m_view;
    WebKitFindController* m_controller;
    // The first one runs.
    std::deque<Search> m_searches;
    // What the engine's marks belong to.
    std::string m_markedText;
    guint m_markedOptions { 0 };
    Signal<void(guint)> m_onFound;
    Signal<void()> m_onFailed;
};

}
