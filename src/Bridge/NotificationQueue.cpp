#include "Bridge/NotificationQueue.h"

#include <utility>

namespace tarn {

NotificationQueue::NotificationQueue(platform::NotificationCenter& center, Log log)
    : m_center(center)
    , m_log(std::move(log))
{
}

void NotificationQueue::add(platform::NotificationRequest request)
{
    forget(request.identifier);
    m_waiting.push_back(std::move(request));
    m_byIdentifier.emplace(m_waiting.back().identifier, std::prev(m_waiting.end()));
    if (m_underWay >= atOnce && m_waiting.size() > mostWaiting) {
        takeOldest();
        if (!std::exchange(m_saidDropped, true))
            m_log("[Notifications] too many at once: the oldest are dropped");
    }
    next();
}

void NotificationQueue::remove(std::string const& identifier)
{
    forget(identifier);
    m_center.remove(identifier);
}

void NotificationQueue::forget(std::string const& identifier)
{
    if (auto const waiting = m_byIdentifier.find(identifier); waiting != m_byIdentifier.end()) {
        m_waiting.erase(waiting->second);
        m_byIdentifier.erase(waiting);
    }
}

platform::NotificationRequest NotificationQueue::takeOldest()
{
    auto request = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_byIdentifier.erase(request.identifier);
    return request;
}

void NotificationQueue::report(std::string const& reason)
{
    if (std::exchange(m_lastReason, reason) != reason)
        m_log("[Notifications] failed: " + reason);
}

void NotificationQueue::next()
{
    while (m_underWay < atOnce && !m_waiting.empty()) {
        ++m_underWay;
        m_center.add(takeOldest(), m_lifetime.guard([this](std::optional<std::string> const& error) {
            --m_underWay;
            if (error)
                report(*error);
            else
                m_lastReason.clear();
            if (m_waiting.empty())
                m_saidDropped = false;
            next();
        }));
    }
}

}
