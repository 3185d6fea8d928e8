#pragma once

#include "MainWindow/FirstPage.h"
#include "Platform/RunLoop.h"
#include "Platform/WebView.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string_view>

namespace tarn {

// Reloads a view whose process ended, after a pause. A page that ends it again and again is not reloaded for ever: the
// view then shows a notice with a Reload button.
class WebProcessRecovery {
public:
    static constexpr std::chrono::seconds window { 60 };
    // Of other processes that ended in the same moment the engine may not know yet, and give one of them to the page.
    static constexpr std::chrono::milliseconds pause { 200 };
    // The view is given up when its process ends once more than this within the window.
    static constexpr std::size_t reloadsPerWindow { 3 };
    static constexpr std::string_view restartTitle { "Restart with Safe Rendering" };

    WebProcessRecovery(platform::RunLoop& runLoop, FirstPage& firstPage)
        : m_runLoop(runLoop)
        , m_firstPage(firstPage)
    {
    }

    // Set by the owner, where that can be: starts the application again, drawing in software. Offered while no page has
    // come at all, which may be the graphics driver's fault.
    std::function<void()> restartSafely;

    void didTerminate(platform::WebView&, platform::ProcessTermination const&);
    // The view is gone.
    void forget(platform::WebView const& view) { m_views.erase(&view); }
    // All views are gone, or start afresh.
    void forgetViews() { m_views.clear(); }

private:
    struct Reloads {
        std::deque<std::chrono::steady_clock::time_point> times {};
        std::unique_ptr<platform::Timer> next {};
    };

    void showNotice(platform::WebView&, platform::PageNotice);

    platform::RunLoop& m_runLoop;
    FirstPage& m_firstPage;
    std::map<platform::WebView const*, Reloads> m_views;
};

}
