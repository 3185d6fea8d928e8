#include "MainWindow/FailedLoads.h"

#include <utility>

namespace tarn {

FailedLoads::FailedLoads(platform::NetworkMonitor& monitor, platform::RunLoop& runLoop)
    : m_monitor(monitor)
    , m_runLoop(runLoop)
{
    m_monitor.setOnChange([this] { retrySoon(); });
}

FailedLoads::~FailedLoads()
{
    m_monitor.setOnChange(nullptr);
}

void FailedLoads::didFail(platform::WebView& view, platform::LoadFailure const& failure)
{
    auto const url = Url::parse(failure.url);
    m_failed.erase(&view);
    // A certificate does not get better by asking again.
    if (failure.kind != platform::LoadFailure::Kind::notSecure)
        m_failed.emplace(&view, Failed { view.weak(), url });
    view.showNotice(platform::PageNotice {
        .title = "This Page Could Not Be Loaded",
        .text = words(failure) + "\n" + failure.url,
        .button = "Retry",
        .onButton = [&view, url] { load(view, url); },
    });
}

std::string FailedLoads::words(platform::LoadFailure const& failure) const
{
    using Kind = platform::LoadFailure::Kind;
    if (failure.kind == Kind::notSecure)
        return "The connection is not secure: the certificate of the site cannot be trusted.";
    if (!m_monitor.isAvailable())
        return "This computer is not connected to a network. The page loads by itself once it is.";
    switch (failure.kind) {
    case Kind::nameNotFound:
        return "No site of this name was found.";
    case Kind::cannotConnect:
        return "The site could not be reached.";
    case Kind::timedOut:
        return "The site took too long to answer.";
    case Kind::notSecure:
    case Kind::other:
        break;
    }
    return failure.reason;
}

void FailedLoads::retrySoon()
{
    m_timer = m_runLoop.after(settlingTime, [this] { loadAgain(); });
}

void FailedLoads::loadAgain()
{
    if (!m_monitor.isAvailable())
        return;
    // Those that fail again are back in the list for the next event.
    for (auto const& [identity, failed] : std::exchange(m_failed, {})) {
        if (auto* const view = failed.view.lock().get())
            load(*view, failed.url);
    }
    if (onRetry)
        onRetry();
}

void FailedLoads::load(platform::WebView& view, std::optional<Url> const& url)
{
    if (url)
        view.load({ .url = *url });
    else
        view.reload();
}

}
