#pragma once

#include "Platform/Gtk/NotificationReplies.h"
#include "Support/Lifetime.h"

#include <giomm/dbusconnection.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarn::gtk {

// The program of the desktop that shows notifications (org.freedesktop.Notifications, version 1.2 of its
// interface). It may be absent, start late, hang, end and start again; no call waits for it.
class NotificationDaemon {
public:
    // What the daemon is told; ids are its own, 0 is none.
    struct Notice {
        std::uint32_t replaces { 0 };
        std::string title;
        std::string body;
        bool isQuiet { false };
        bool hasSound { false };
    };
    struct Problem {
        std::string reason;
        // It refuses the same notification twice within a second.
        bool isRepetition { false };
    };

    NotificationDaemon(Glib::RefPtr<Gio::DBus::Connection>, std::string applicationId);
    ~NotificationDaemon();
    NotificationDaemon(NotificationDaemon const&) = delete;
    NotificationDaemon& operator=(NotificationDaemon const&) = delete;

    // The ids of before mean nothing any more, or something else.
    std::function<void()> onVanish;
    std::function<void(std::uint32_t id)> onAction;
    std::function<void(std::uint32_t id)> onClosed;
    // Permission to raise a window; it precedes the action.
    std::function<void(std::uint32_t id, std::string const& token)> onActivationToken;

    // Whether there is one; one that can be started is started. The completion gets the reason when there is none.
    void reach(std::function<void(std::optional<std::string>)> completion);
    // The id that it gave, or 0 when it has ended since.
    void notify(Notice, std::function<void(std::uint32_t id, std::optional<Problem>)> completion);
    void close(std::uint32_t id);

private:
    using Done = std::function<void(GVariant*, GError const*)>;

    void appeared();
    void vanished();
    void settle();
    void start();
    void answerReach(std::optional<std::string> const& problem);
    void received(char const* name, GVariant* parameters) const;
    void send(Notice const&, std::function<void(std::uint32_t, std::optional<Problem>)> const& completion);
    void call(char const* destination, char const* path, char const* interface, char const* method,
        GVariant* parameters, char const* replyType, std::chrono::milliseconds timeout, Done);

    Glib::RefPtr<Gio::DBus::Connection> m_bus;
    std::string m_applicationId;
    unsigned m_watch { 0 };
    unsigned m_subscription { 0 };
    bool m_settled { false };
    bool m_present { false };
    // Counts the daemons that have come.
    unsigned m_generation { 0 };
    std::optional<NotificationReplies::Capabilities> m_capabilities;
    std::vector<std::function<void()>> m_waitingForCapabilities;
    std::vector<std::function<void(std::optional<std::string>)>> m_reaching;
    Lifetime m_lifetime;
};

}
