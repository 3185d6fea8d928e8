#include "Platform/Gtk/MessageChannel.h"

#include "Support/Uuid.h"

#include <libsoup/soup.h>

#include <array>
#include <utility>

namespace tarn::gtk {

namespace {

// What is over the limit is left unread.
std::string readBody(WebKitURISchemeRequest* request, std::size_t limit)
{
    std::string body;
    auto* const stream = webkit_uri_scheme_request_get_http_body(request);
    std::array<char, 16'384> buffer {};
    while (stream && body.size() <= limit) {
        // The engine hands the whole body over in memory: this does not wait.
        auto const count = g_input_stream_read(stream, buffer.data(), buffer.size(), nullptr, nullptr);
        if (count <= 0)
            break;
        body.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return body;
}

void refuse(WebKitURISchemeRequest* request)
{
    auto* const error = g_error_new_literal(G_IO_ERROR, G_IO_ERROR_PERMISSION_DENIED, "refused");
    webkit_uri_scheme_request_finish_error(request, error);
    g_error_free(error);
}

void answer(WebKitURISchemeRequest* request, std::string const& origin, std::string const& text)
{
    auto* const bytes = g_bytes_new(text.data(), text.size());
    auto const stream = adopt(g_memory_input_stream_new_from_bytes(bytes));
    g_bytes_unref(bytes);
    auto const response = adopt(webkit_uri_scheme_response_new(stream.get(), static_cast<gint64>(text.size())));
    webkit_uri_scheme_response_set_content_type(response.get(), "text/plain; charset=utf-8");
    auto* const headers = soup_message_headers_new(SOUP_MESSAGE_HEADERS_RESPONSE);
    soup_message_headers_append(headers, "Access-Control-Allow-Origin", origin.c_str());
    webkit_uri_scheme_response_set_http_headers(response.get(), headers);
    webkit_uri_scheme_request_finish_with_response(request, response.get());
}

}

MessageChannel::MessageChannel(WebKitWebContext* context, Log log)
    : m_log(std::move(log))
    , m_nonce(Uuid::random().string())
{
    auto* const security = webkit_web_context_get_security_manager(context);
    // Without both of these a fetch from an https page never arrives.
    webkit_security_manager_register_uri_scheme_as_secure(security, scheme);
    webkit_security_manager_register_uri_scheme_as_cors_enabled(security, scheme);
    webkit_web_context_register_uri_scheme(
        context, scheme,
        [](WebKitURISchemeRequest* request, gpointer self) { static_cast<MessageChannel*>(self)->handle(request); },
        this, nullptr);
}

void MessageChannel::setReceiver(WebKitWebView* view, Receiver receiver)
{
    m_receivers.insert_or_assign(view, std::move(receiver));
}

void MessageChannel::removeReceiver(WebKitWebView* view)
{
    m_receivers.erase(view);
}

Ref<WebKitUserContentManager> MessageChannel::contentManagerWithScripts(
    std::initializer_list<std::string_view> sources) const
{
    auto const send = std::string("(name, text) => fetch('") + scheme
        + "://' + name + '/', { method: 'POST', headers: { 'Content-Type': 'text/plain' }, body: '" + m_nonce
        + "\\n' + text }).then((response) => response.text()).catch(() => undefined)";
    auto manager = adopt(webkit_user_content_manager_new());
    for (auto const& source : sources) {
        auto const script = "(" + std::string(source) + ")(" + send + ");";
        auto* const userScript = webkit_user_script_new_for_world(script.c_str(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
            WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, scriptWorld, nullptr, nullptr);
        webkit_user_content_manager_add_script(manager.get(), userScript);
        webkit_user_script_unref(userScript);
    }
    return manager;
}

void MessageChannel::handle(WebKitURISchemeRequest* request)
{
    auto const receiver = m_receivers.find(webkit_uri_scheme_request_get_web_view(request));
    auto* const headers = webkit_uri_scheme_request_get_http_headers(request);
    auto const* const origin = headers ? soup_message_headers_get_one(headers, "Origin") : nullptr;
    auto const limit = maximumBody + m_nonce.size() + 1;
    auto const body = readBody(request, limit);
    if (receiver == m_receivers.end() || !origin || !body.starts_with(m_nonce + "\n")) {
        refuse(request);
        return;
    }
    if (body.size() > limit) {
        if (!std::exchange(m_saidTooLong, true))
            m_log("[Pages] refused a message of more than 8 MiB from " + std::string(origin));
        refuse(request);
        return;
    }

    std::string_view name = webkit_uri_scheme_request_get_uri(request);
    name.remove_prefix(std::string_view(scheme).size() + 3);
    name = name.substr(0, name.find('/'));
    auto const handler = receiver->second;
    handler({ .name = name, .origin = origin, .body = std::string_view(body).substr(m_nonce.size() + 1) },
        Answer([request = share(request), origin = std::string(origin)](
                   std::string const& text) { answer(request.get(), origin, text); },
            {}));
}

}
