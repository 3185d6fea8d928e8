#include "MainWindow/WebProcessRecovery.h"

#include <utility>

namespace tarn {

void WebProcessRecovery::didTerminate(platform::WebView& view, platform::ProcessTermination const& termination)
{
    auto const reload = [this, &view] {
        m_views.erase(&view);
        view.reload();
    };
    if (termination.reason == platform::ProcessTermination::Reason::cannotStart) {
        showNotice(view,
            {
                .title = "Pages Cannot Be Shown Here",
                .text = termination.explanation,
                .button = "Reload",
                .onButton = reload,
            });
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
    platform::PageNotice notice {
        .title = "This Page Keeps Stopping",
        .text = "It ended several times within a minute, so Tarn has stopped reloading it.",
        .button = "Reload",
        .onButton = reload,
    };
    if (!m_firstPage.pageHasCome() && restartSafely) {
        notice.text += "\nNo page has come since Tarn was started: the graphics driver may be at fault. With safe "
                       "rendering Tarn draws everything in software, which is slower.";
        notice.secondButton = std::exchange(notice.button, restartTitle);
        notice.onSecondButton = std::exchange(notice.onButton, restartSafely);
    }
    showNotice(view, std::move(notice));
}

void WebProcessRecovery::showNotice(platform::WebView& view, platform::PageNotice notice)
{
    view.showNotice(std::move(notice));
    m_firstPage.noticeCame();
}

}
