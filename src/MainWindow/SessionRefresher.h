#pragma once

#include "Platform/WebView.h"

#include <chrono>
#include <functional>
#include <optional>
#include <set>

namespace tarn {

// A Google sign-in happens in one app's view, but its cookie serves all apps of the profile. This remembers the views
// that pass through the accounts page, and has the other apps reloaded once the sign-in lands on a Google app again.
class SessionRefresher {
public:
    // Sign-ins that complete within this time of a refresh reload nothing.
    static constexpr std::chrono::seconds interval { 30 };

    class Host {
    public:
        virtual std::chrono::steady_clock::time_point now() const = 0;
        // Loads the home of each app whose view is wanted.
        virtual void reloadApps(std::function<bool(platform::WebView const&)> const& isWanted) = 0;

    protected:
        ~Host() = default;
    };

    explicit SessionRefresher(Host& host)
        : m_host(host)
    {
    }

    void didCommit(platform::WebView const&);
    void didFinish(platform::WebView const&);
    // Pages may come now that did not: apps that were sent to sign in while nobody looked begin again. The page on the
    // screen, if any, stays: the user may be typing there.
    void retry(platform::WebView const* onScreen) const;
    // The views are gone.
    void forgetViews() { m_signingIn.clear(); }

private:
    Host& m_host;
    std::set<platform::WebView const*> m_signingIn;
    std::optional<std::chrono::steady_clock::time_point> m_lastSync;
};

}
