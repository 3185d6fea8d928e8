#include "HeldAnswers.h"

#include <algorithm>
#include <memory>

namespace tarn::stage {

namespace {

constexpr std::chrono::seconds keepAlive { 15 };
constexpr std::size_t pieces = 20;

void append(SoupServerMessage* message, std::string_view text)
{
    auto* const body = soup_server_message_get_response_body(message);
    soup_message_body_append(body, SOUP_MEMORY_COPY, text.data(), text.size());
    soup_server_message_unpause(message);
}

std::string asEvent(std::string_view data)
{
    return std::string("data: ").append(data).append("\n\n");
}

}

void send(SoupServerMessage* message, Response const& response)
{
    soup_server_message_set_status(message, response.status, nullptr);
    auto* const headers = soup_server_message_get_response_headers(message);
    for (auto const& [name, value] : response.headers)
        soup_message_headers_append(headers, name.c_str(), value.c_str());
    if (!response.contentType.empty()) {
        soup_server_message_set_response(
            message, response.contentType.c_str(), SOUP_MEMORY_COPY, response.body.data(), response.body.size());
    }
}

HeldAnswers::~HeldAnswers()
{
    while (!m_held.empty())
        forget(m_held.front());
}

HeldAnswers::Held& HeldAnswers::hold(SoupServerMessage* message)
{
    auto& held = m_held.emplace_back();
    held.owner = this;
    held.self = std::prev(m_held.end());
    held.message = gtk::share(message);
    g_signal_connect(message, "finished", G_CALLBACK(+[](SoupServerMessage*, gpointer data) {
        auto& finished = *static_cast<Held*>(data);
        finished.owner->forget(finished);
    }),
        &held);
    return held;
}

void HeldAnswers::forget(Held& held)
{
    g_signal_handlers_disconnect_by_data(held.message.get(), &held);
    if (held.timer)
        g_source_remove(held.timer);
    m_held.erase(held.self);
}

void HeldAnswers::startTimer(Held& held, std::chrono::milliseconds interval, std::function<bool()> onTimer)
{
    held.onTimer = std::move(onTimer);
    held.timer = g_timeout_add(
        static_cast<guint>(interval.count()),
        [](gpointer data) -> gboolean {
            auto& due = *static_cast<Held*>(data);
            if (due.onTimer())
                return G_SOURCE_CONTINUE;
            due.timer = 0;
            return G_SOURCE_REMOVE;
        },
        &held);
}

void HeldAnswers::never(SoupServerMessage* message)
{
    hold(message);
    soup_server_message_pause(message);
}

void HeldAnswers::later(SoupServerMessage* message, std::chrono::milliseconds delay, Response response)
{
    soup_server_message_pause(message);
    startTimer(hold(message), delay, [message, response = std::move(response)] {
        send(message, response);
        soup_server_message_unpause(message);
        return false;
    });
}

void HeldAnswers::streamEvents(SoupServerMessage* message, std::string account, std::string_view firstEvent)
{
    auto& held = hold(message);
    held.account = std::move(account);
    soup_server_message_set_status(message, 200, nullptr);
    auto* const headers = soup_server_message_get_response_headers(message);
    soup_message_headers_set_encoding(headers, SOUP_ENCODING_CHUNKED);
    soup_message_headers_append(headers, "Content-Type", "text/event-stream");
    soup_message_headers_append(headers, "Cache-Control", "no-store");
    soup_message_body_set_accumulate(soup_server_message_get_response_body(message), FALSE);
    append(message, asEvent(firstEvent));
    // A comment now and then: only a failed write tells that the page is gone.
    startTimer(held, keepAlive, [message] {
        append(message, ":\n\n");
        return true;
    });
}

void HeldAnswers::sendEvent(std::string_view account, std::string_view event)
{
    for (auto const& held : m_held) {
        if (held.account == account)
            append(held.message.get(), asEvent(event));
    }
}

void HeldAnswers::dripBody(SoupServerMessage* message, std::chrono::milliseconds pause, std::string body)
{
    soup_message_body_set_accumulate(soup_server_message_get_response_body(message), FALSE);
    auto& held = hold(message);
    startTimer(held, pause, [&held, body = std::move(body), sent = std::size_t { 0 }]() mutable {
        auto* const answer = held.message.get();
        auto* const headers = soup_server_message_get_response_headers(answer);
        if (sent < body.size()) {
            auto const piece = std::string_view(body).substr(sent, body.size() / pieces + 1);
            sent += piece.size();
            append(answer, piece);
            return true;
        }
        bool const chunked = soup_message_headers_get_encoding(headers) == SOUP_ENCODING_CHUNKED;
        if (chunked || soup_message_headers_get_content_length(headers) <= static_cast<goffset>(sent)) {
            soup_message_body_complete(soup_server_message_get_response_body(answer));
            soup_server_message_unpause(answer);
        } else {
            auto const connection = Ref<GIOStream>::adopt(soup_server_message_steal_connection(answer));
            g_io_stream_close(connection.get(), nullptr, nullptr);
        }
        return false;
    });
}

}
