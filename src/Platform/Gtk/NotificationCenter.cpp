#include "Platform/Gtk/NotificationCenter.h"

#include <utility>

namespace tarn::gtk {

namespace {

// Notifications that no daemon has ever said to be closed.
constexpr std::size_t mostKept = 4000;
constexpr std::size_t mostEarly = 64;

}

NotificationCenter::NotificationCenter(Glib::RefPtr<Gio::DBus::Connection> bus, std::string const& applicationId)
    : m_switch(applicationId)
    , m_daemon(std::move(bus), applicationId)
{
    m_daemon.onVanish = [this] { forgetAll(); };
    m_daemon.onAction = [this](std::uint32_t id) { invoke(id); };
    m_daemon.onClosed = [this](std::uint32_t id) { closed(id); };
    m_daemon.onActivationToken = [this](std::uint32_t id, std::string const& token) {
        // Daemons may tell everybody about everybody's.
        if (m_identifiers.contains(id) || (m_underWay > 0 && m_tokens.size() < mostEarly))
            m_tokens.insert_or_assign(id, token);
    };
}

void NotificationCenter::authorization(std::function<void(platform::Authorization)> completion)
{
    m_daemon.reach([this, completion = std::move(completion)](std::optional<std::string> const& problem) {
        using platform::AuthorizationStatus;
        platform::Authorization const result {
            .status = !problem && m_switch.isOn() ? AuthorizationStatus::authorized : AuthorizationStatus::denied,
            .reason = problem.value_or(""),
        };
        m_runLoop.post(m_lifetime.guard([completion, result] { completion(result); }));
    });
}

void NotificationCenter::add(
    platform::NotificationRequest const& request, std::function<void(std::optional<std::string>)> completion)
{
    auto& entry = m_entries[request.identifier];
    auto answerLater = [this, completion = std::move(completion)](std::optional<std::string> const& problem) {
        m_runLoop.post(m_lifetime.guard([completion, problem] { completion(problem); }));
    };
    if (!entry.isUnderWay) {
        send({ request, std::move(answerLater) }, Attempt::first);
        return;
    }
    entry.isRemoved = false;
    if (auto const earlier = std::exchange(entry.successor, Addition { request, std::move(answerLater) }))
        earlier->completion(std::nullopt);
}

void NotificationCenter::remove(std::string const& identifier)
{
    auto const found = m_entries.find(identifier);
    if (found == m_entries.end())
        return;
    auto& entry = found->second;
    if (auto const successor = std::exchange(entry.successor, std::nullopt))
        successor->completion(std::nullopt);
    if (entry.isUnderWay) {
        entry.isRemoved = true;
        return;
    }
    m_daemon.close(entry.id);
    m_identifiers.erase(entry.id);
    m_entries.erase(found);
}

void NotificationCenter::send(Addition addition, Attempt attempt)
{
    auto const& request = addition.request;
    auto& entry = m_entries[request.identifier];
    entry.isUnderWay = true;
    entry.userInfo = request.userInfo;
    ++m_underWay;
    auto const presentation
        = m_delegate ? m_delegate->willPresent(request) : platform::NotificationPresentation::banner;
    bool const isQuiet = presentation == platform::NotificationPresentation::listOnly;
    NotificationDaemon::Notice notice {
        .replaces = entry.id,
        .title = request.title,
        .body = request.body,
        .isQuiet = isQuiet,
        .hasSound = !isQuiet && request.sound == platform::NotificationSound::standard,
    };
    m_daemon.notify(std::move(notice),
        [this, addition = std::move(addition), attempt](std::uint32_t id,
            std::optional<NotificationDaemon::Problem> const& problem) { sent(addition, attempt, id, problem); });
}

void NotificationCenter::sent(Addition const& addition, Attempt attempt, std::uint32_t id,
    std::optional<NotificationDaemon::Problem> const& problem)
{
    auto const identifier = addition.request.identifier;
    auto& entry = m_entries[identifier];
    --m_underWay;
    if (problem && problem->isRepetition && attempt == Attempt::first && !entry.isRemoved && !entry.successor) {
        entry.retry = m_runLoop.after(repetitionPause, [this, addition, identifier] {
            auto const timer = std::move(m_entries[identifier].retry);
            if (m_entries[identifier].isRemoved) {
                addition.completion(std::nullopt);
                m_entries.erase(identifier);
            } else {
                send(addition, Attempt::second);
            }
        });
        return;
    }

    entry.isUnderWay = false;
    addition.completion(problem ? std::optional(problem->reason) : std::nullopt);
    if (!problem)
        setID(identifier, id);
    if (auto successor = std::exchange(entry.successor, std::nullopt)) {
        send(std::move(*successor), Attempt::first);
    } else if (entry.isRemoved) {
        entry.isRemoved = false;
        if (entry.id != 0)
            remove(identifier);
        else
            m_entries.erase(identifier);
    } else if (entry.id == 0) {
        m_entries.erase(identifier);
    } else if (m_earlyActions.erase(entry.id) > 0) {
        invoke(entry.id);
    }
    if (m_underWay == 0)
        m_earlyActions.clear();
}

void NotificationCenter::setID(std::string const& identifier, std::uint32_t id)
{
    auto& entry = m_entries[identifier];
    if (entry.id != id)
        m_identifiers.erase(entry.id);
    entry.id = id;
    if (id == 0)
        return;
    // The daemon has used it before: for one of ours that it never said to be closed.
    if (auto const earlier = m_identifiers.find(id); earlier != m_identifiers.end() && earlier->second != identifier)
        closed(id);
    m_identifiers.insert_or_assign(id, identifier);
    if (m_identifiers.size() > mostKept) {
        auto const lowest = m_identifiers.begin()->first;
        closed(lowest == id ? m_identifiers.rbegin()->first : lowest);
    }
}

void NotificationCenter::invoke(std::uint32_t id)
{
    auto const identifier = m_identifiers.find(id);
    if (identifier == m_identifiers.end()) {
        if (m_underWay > 0 && m_earlyActions.size() < mostEarly)
            m_earlyActions.insert(id);
        return;
    }
    auto const token = m_tokens.extract(id);
    if (token && onActivationToken)
        onActivationToken(token.mapped());
    platform::NotificationResponse const response { identifier->second, m_entries[identifier->second].userInfo };
    if (m_delegate)
        m_delegate->didReceive(response);
}

void NotificationCenter::closed(std::uint32_t id)
{
    m_tokens.erase(id);
    auto const found = m_identifiers.find(id);
    if (found == m_identifiers.end())
        return;
    auto const entry = m_entries.find(found->second);
    m_identifiers.erase(found);
    entry->second.id = 0;
    if (!entry->second.isUnderWay)
        m_entries.erase(entry);
}

void NotificationCenter::forgetAll()
{
    m_identifiers.clear();
    m_tokens.clear();
    m_earlyActions.clear();
    std::erase_if(m_entries, [](auto const& entry) { return !entry.second.isUnderWay; });
    for (auto& [identifier, entry] : m_entries)
        entry.id = 0;
}

}
