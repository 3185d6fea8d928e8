#pragma once

#include "Platform/NotificationCenter.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

#include <cstddef>
#include <list>
#include <string>
#include <unordered_map>

namespace tarn {

// Hands requests to the notification centre in their order, a few at a time: a desktop that is slow, or that a page
// floods, makes the others wait. Of too many that wait the oldest are dropped.
class NotificationQueue {
public:
    static constexpr std::size_t atOnce { 16 };
    static constexpr std::size_t mostWaiting { 1000 };

    NotificationQueue(platform::NotificationCenter&, Log);

    void add(platform::NotificationRequest);
    // Takes back what waits, and takes away what has been handed over.
    void remove(std::string const& identifier);

    // A reason why nothing can be shown is logged once, until it changes or something is shown again.
    void report(std::string const& reason);

private:
    using Waiting = std::list<platform::NotificationRequest>;

    void next();
    void forget(std::string const& identifier);
    platform::NotificationRequest takeOldest();

    platform::NotificationCenter& m_center;
    Log m_log;
    Waiting m_waiting;
    std::unordered_map<std::string, Waiting::iterator> m_byIdentifier;
    std::size_t m_underWay { 0 };
    bool m_saidDropped { false };
    std::string m_lastReason;
    Lifetime m_lifetime;
};

}
