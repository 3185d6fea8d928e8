#pragma once

#include "Platform/NetworkMonitor.h"
#include "Platform/RunLoop.h"
#include "Platform/WebView.h"

#include <map>
#include <memory>
#include <optional>

namespace tarn {

// Says in plain words why a page did not come, and loads it again when the network has come back or the computer has
// woken up.
class FailedLoads {
public:
    // One event of the network is told several times, and names are not found at once after it.
    static constexpr std::chrono::seconds settlingTime { 2 };

    FailedLoads(platform::NetworkMonitor&, platform::RunLoop&);
    ~FailedLoads();
    FailedLoads(FailedLoads const&) = delete;
    FailedLoads& operator=(FailedLoads const&) = delete;

    void didFail(platform::WebView&, platform::LoadFailure const&);
    // A page has come after all.
    void didCommit(platform::WebView& view) { m_failed.erase(&view); }
    // Something has changed that pages may have failed for.
    void retrySoon();

    // Set by the owner: called with each such attempt.
    std::function<void()> onRetry;

private:
    struct Failed {
        std::weak_ptr<platform::WebView> view;
        std::optional<Url> url;
    };

    std::string words(platform::LoadFailure const&) const;
    void loadAgain();
    static void load(platform::WebView&, std::optional<Url> const&);

    platform::NetworkMonitor& m_monitor;
    platform::RunLoop& m_runLoop;
    std::map<platform::WebView const*, Failed> m_failed;
    std::unique_ptr<platform::Timer> m_timer;
};

}
