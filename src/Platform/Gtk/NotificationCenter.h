#pragma once

#include "Platform/Gtk/NotificationDaemon.h"
#include "Platform/Gtk/NotificationSwitch.h"
#include "Platform/Gtk/RunLoop.h"
#include "Platform/NotificationCenter.h"
#include "Support/Lifetime.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace tarn::gtk {

// The notification centre on the desktop's daemon. It keeps the daemon's ids apart from the application's identifiers,
// also while the daemon has not said its id yet, and forgets them all when the daemon ends.
class NotificationCenter final : public platform::NotificationCenter {
public:
    // A daemon that refuses to show the same twice in a row is asked again after this time.
    static constexpr std::chrono::milliseconds repetitionPause { 1100 };

    NotificationCenter(Glib::RefPtr<Gio::DBus::Connection>, std::string const& applicationId);

    // The desktop's permission to raise a window; the delegate is told of the click right after.
    std::function<void(std::string const& token)> onActivationToken;

    void setDelegate(platform::NotificationCenterDelegate* delegate) override { m_delegate = delegate; }
    void authorization(std::function<void(platform::Authorization)>) override;
    // There is no question to put to the user on this platform.
    void requestAuthorization(std::function<void(platform::Authorization)> completion) override
    {
        authorization(std::move(completion));
    }
    void add(platform::NotificationRequest const&, std::function<void(std::optional<std::string>)>) override;
    void remove(std::string const& identifier) override;

private:
    struct Addition {
        platform::NotificationRequest request;
        std::function<void(std::optional<std::string>)> completion;
    };
    struct Entry {
        std::uint32_t id { 0 };
        std::map<std::string, std::string> userInfo {};
        bool isUnderWay { false };
        bool isRemoved { false };
        // Takes its place once the daemon has answered.
        std::optional<Addition> successor {};
        std::unique_ptr<platform::Timer> retry {};
    };
    enum class Attempt { first, second };

    void send(Addition, Attempt);
    void sent(Addition const&, Attempt, std::uint32_t id, std::optional<NotificationDaemon::Problem> const&);
    void setID(std::string const& identifier, std::uint32_t id);
    void invoke(std::uint32_t id);
    void closed(std::uint32_t id);
    void forgetAll();

    RunLoop m_runLoop;
    NotificationSwitch m_switch;
    NotificationDaemon m_daemon;
    platform::NotificationCenterDelegate* m_delegate { nullptr };
    std::map<std::string, Entry> m_entries;
    std::map<std::uint32_t, std::string> m_identifiers;
    std::size_t m_underWay { 0 };
    // A click may overtake the answer that says whose it is.
    std::set<std::uint32_t> m_earlyActions;
    std::map<std::uint32_t, std::string> m_tokens;
    Lifetime m_lifetime;
};

}
