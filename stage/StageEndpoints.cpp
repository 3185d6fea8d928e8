#include "StageEndpoints.h"

#include "Text.h"

#include <algorithm>
#include <cstdlib>

namespace tarn::stage {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view prefix = "/_stage/";
constexpr std::string_view downloadPrefix = "/_stage/download/";
constexpr std::string_view statePrefix = "/_stage/state";
constexpr unsigned long mostDownloaded = 64UL * 1024 * 1024;

Response noContent()
{
    return { 204, {}, {}, { { "Cache-Control", "no-store" } } };
}

Response text(unsigned status, std::string body)
{
    return { status, "text/plain; charset=utf-8", std::move(body), { { "Cache-Control", "no-store" } } };
}

// Not more than the limit; nothing readable is 0.
unsigned long number(std::string_view query, std::string_view name, unsigned long limit)
{
    auto const value = formValue(query, name);
    return value && !value->starts_with('-') ? std::min(std::strtoul(value->c_str(), nullptr, 10), limit) : 0;
}

}

StageEndpoints::StageEndpoints(Mailboxes& mailboxes)
    : m_mailboxes(mailboxes)
{
    m_mailboxes.onChange
        = [this](std::string const& account) { m_held.sendEvent(account, m_mailboxes.state(account).value_or("")); };
}

bool StageEndpoints::answer(SoupServerMessage* message, Request const& request)
{
    if (!request.path.starts_with(prefix))
        return false;
    auto const name = std::string_view(request.path).substr(prefix.size());
    if (request.path.starts_with(statePrefix))
        return answerState(message, request);
    if (name == "beacon" && request.method == "POST")
        send(message, noContent());
    else if (name == "auth-basic")
        answerBasic(message);
    else if (name == "hang")
        m_held.never(message);
    else if (name == "slow")
        m_held.later(
            message, std::chrono::seconds(number(request.query, "seconds", 600)), text(200, "Late, but here."));
    else if (request.path.starts_with(downloadPrefix))
        answerDownload(message, request);
    else
        return false;
    return true;
}

bool StageEndpoints::answerState(SoupServerMessage* message, Request const& request)
{
    auto const name = std::string_view(request.path).substr(statePrefix.size());
    auto const account = formValue(request.query, "account").value_or(request.account);
    auto const state = m_mailboxes.state(account);
    if (!state) {
        send(message, text(404, "No such account."));
        return true;
    }
    bool const post = request.method == "POST";
    if (name.empty() && !post) {
        send(message, { 200, "application/json", *state, { { "Cache-Control", "no-store" } } });
        return true;
    }
    if (name == "/events" && !post) {
        m_held.streamEvents(message, account, *state);
        return true;
    }
    if (!post)
        return false;
    if (name == "/unread")
        m_mailboxes.setUnread(account, static_cast<unsigned>(number(request.query, "count", Mailboxes::maximumUnread)));
    else if (name == "/read")
        m_mailboxes.markRead(account, formValue(request.query, "id").value_or(""));
    else if (name == "/deliver")
        m_mailboxes.deliver(account, formValue(request.query, "from").value_or("Somebody"),
            formValue(request.query, "subject").value_or("No subject"));
    else
        return false;
    send(message, noContent());
    return true;
}

void StageEndpoints::answerBasic(SoupServerMessage* message) const
{
    auto const* const header
        = soup_message_headers_get_one(soup_server_message_get_request_headers(message), "Authorization");
    std::string credentials;
    if (header && g_str_has_prefix(header, "Basic ")) {
        gsize length = 0;
        auto* const decoded = g_base64_decode(header + sizeof "Basic", &length);
        credentials.assign(reinterpret_cast<char const*>(decoded), length);
        g_free(decoded);
    }
    auto const colon = credentials.find(':');
    if (colon != credentials.npos && credentials.substr(colon) == ":tarn") {
        send(message, text(200, "Come in, " + credentials.substr(0, colon) + "."));
        return;
    }
    auto response = text(401, "A name and the password are needed.");
    response.headers.emplace_back("WWW-Authenticate", "Basic realm=\"Stage\"");
    send(message, response);
}

void StageEndpoints::answerDownload(SoupServerMessage* message, Request const& request)
{
    auto const kind = formValue(request.query, "kind").value_or("sized");
    auto const name = percentDecoded(std::string_view(request.path).substr(downloadPrefix.size())).value_or("file");
    auto* const headers = soup_server_message_get_response_headers(message);
    auto const size = std::max(1UL, number(request.query, "size", mostDownloaded));
    std::string content;
    while (content.size() < size)
        content += "A stand-in file has no meaning, only a length.\n";
    content.resize(size);

    if (kind != "inline") {
        auto* const parameters = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free);
        g_hash_table_insert(parameters, g_strdup("filename"), g_strdup(name.c_str()));
        soup_message_headers_set_content_disposition(headers, "attachment", parameters);
        g_hash_table_unref(parameters);
    }
    soup_server_message_set_status(message, 200, nullptr);
    soup_message_headers_append(headers, "Cache-Control", "no-store");
    soup_message_headers_append(headers, "Content-Type", "application/octet-stream");
    if (kind == "unsized")
        soup_message_headers_set_encoding(headers, SOUP_ENCODING_CHUNKED);
    else
        soup_message_headers_set_content_length(headers, static_cast<goffset>(kind == "broken" ? 2 * size : size));
    bool const dripping = kind == "slow" || kind == "broken";
    if (dripping) {
        auto const pause = number(request.query, "pause", 60'000);
        m_held.dripBody(message, milliseconds(pause ? pause : 250), std::move(content));
        return;
    }
    auto* const body = soup_server_message_get_response_body(message);
    soup_message_body_append(body, SOUP_MEMORY_COPY, content.data(), content.size());
    soup_message_body_complete(body);
}

}
