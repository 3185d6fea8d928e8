#include "Mailboxes.h"

#include "Account.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>

namespace tarn::stage {

Mailboxes::Mailboxes()
{
    for (auto const& account : accounts())
        m_mailboxes.emplace(account.id, Mailbox { account.unread, {}, {} });
}

unsigned Mailboxes::unread(std::string_view account) const
{
    auto const found = m_mailboxes.find(account);
    if (found == m_mailboxes.end())
        return 0;
    auto const& [top, read, arrivals] = found->second;
    return static_cast<unsigned>(top - read.size() + std::ranges::count(arrivals, false, &Arrival::read));
}

void Mailboxes::setUnread(std::string_view account, unsigned count)
{
    auto const found = m_mailboxes.find(account);
    if (found == m_mailboxes.end())
        return;
    found->second.top = std::min(count, maximumUnread);
    found->second.read.clear();
    for (auto& arrival : found->second.arrivals)
        arrival.read = true;
    changed(account);
}

void Mailboxes::markRead(std::string_view account, std::string_view conversation)
{
    auto const found = m_mailboxes.find(account);
    if (found == m_mailboxes.end())
        return;
    auto& mailbox = found->second;
    if (auto const arrival = std::ranges::find(mailbox.arrivals, conversation, &Arrival::id);
        arrival != mailbox.arrivals.end()) {
        arrival->read = true;
    } else {
        unsigned place = 0;
        auto const* const end = conversation.data() + conversation.size();
        if (!conversation.starts_with('c') || std::from_chars(conversation.data() + 1, end, place).ptr != end
            || place >= mailbox.top)
            return;
        mailbox.read.insert(place);
    }
    changed(account);
}

std::string Mailboxes::deliver(std::string_view account, std::string from, std::string subject)
{
    auto const found = m_mailboxes.find(account);
    if (found == m_mailboxes.end())
        return {};
    auto& arrivals = found->second.arrivals;
    auto const id = "n" + std::to_string(arrivals.size() + 1);
    arrivals.push_back({ id, std::move(from), std::move(subject), false });
    changed(account);
    return id;
}

std::optional<std::string> Mailboxes::state(std::string_view account) const
{
    auto const found = m_mailboxes.find(account);
    if (found == m_mailboxes.end())
        return std::nullopt;
    auto arrivals = nlohmann::json::array();
    for (auto const& [id, from, subject, read] : found->second.arrivals)
        arrivals.push_back({ { "id", id }, { "from", from }, { "subject", subject }, { "read", read } });
    nlohmann::json const state { { "account", account }, { "unread", unread(account) }, { "top", found->second.top },
        { "read", found->second.read }, { "arrivals", arrivals } };
    return state.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void Mailboxes::changed(std::string_view account) const
{
    if (onChange)
        onChange(std::string(account));
}

}
