#include "MainWindow/WebProcessRecovery.h"

namespace tarn {

void WebProcessRecovery::didTerminate(platform::WebView& view, platform::ProcessTermination const& termination)
{
    if (termination.reason == platform::ProcessTermination::Reason::cannotStart) {
        showNotice(view, "Pages Cannot Be Shown Here", termination.explanation);
        return;
    }

    auto& [times, next] = m_views[&view];
    auto const now = m_runLoop.now();
    while (!times.empty() && now - times.front() > window)
        times.pop_front();
    if (times.size() < reloadsPerWindow) {
        times.push_back(now);
        next = m_runLoop.after(pause, [weak = view.weak()] {
            if (auto const alive = weak.lock())
                alive->reload();
        });
        return;
    }
    showNotice(
        view, "This Page Keeps Stopping", "It ended several times within a minute, so Tarn has stopped reloading it.");
}

void WebProcessRecovery::showNotice(platform::WebView& view, std::string title, std::string text)
{
    view.showNotice(platform::PageNotice {
        .title = std::move(title),
        .text = std::move(text),
        .button = "Reload",
        .onButton =
            [this, &view] {
                m_views.erase(&view);
                view.reload();
            },
    });
}

}
