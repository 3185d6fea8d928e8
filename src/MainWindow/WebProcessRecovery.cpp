#include "MainWindow/WebProcessRecovery.h"

namespace tarn {

void WebProcessRecovery::didTerminate(platform::WebView& view, platform::ProcessTermination const& termination)
{
    if (termination.reason == platform::ProcessTermination::Reason::cannotStart) {
        showNotice(view, "Pages Cannot Be Shown Here", termination.explanation);
        return;
    }

    auto& reloads = m_reloads[&view];
    auto const now = m_runLoop.now();
    while (!reloads.empty() && now - reloads.front() > window)
        reloads.pop_front();
    if (reloads.size() < reloadsPerWindow) {
        reloads.push_back(now);
        view.reload();
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
                m_reloads.erase(&view);
                view.reload();
            },
    });
}

}
