#pragma once

#include "Platform/RunLoop.h"
#include "Platform/WebView.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>

namespace tarn {

// Reloads a view whose process ended. A page that ends it again and again is not reloaded for ever: the view then shows
// a notice with a Reload button.
class WebProcessRecovery {
public:
    static constexpr std::chrono::seconds window { 60 };
    // The view is given up when its process ends once more than this within the window.
    static constexpr std::size_t reloadsPerWindow { 3 };

    explicit WebProcessRecovery(platform::RunLoop& runLoop)
        : m_runLoop(runLoop)
    {
    }

    // Set by the owner: called once, when the first page of the application or a notice in its place has come.
    std::function<void()> onFirstPage;
    // Set by the owner, where that can be: starts the application again, drawing in software. Offered while no page has
    // come at all, which may be the graphics driver's fault.
    std::function<void()> restartSafely;

    void didTerminate(platform::WebView&, platform::ProcessTermination const&);
    // It was loaded, or could not be loaded, which takes a process that works.
    void pageCame();
    // The view is gone.
    void forget(platform::WebView const& view) { m_reloads.erase(&view); }
    // All views are gone, or start afresh.
    void forgetViews() { m_reloads.clear(); }

private:
    void showNotice(platform::WebView&, platform::PageNotice);
    void somethingCame();

    platform::RunLoop& m_runLoop;
    bool m_pageHasCome { false };
    std::map<platform::WebView const*, std::deque<std::chrono::steady_clock::time_point>> m_reloads;
};

}
