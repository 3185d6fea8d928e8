#include "Platform/Gtk/MessageChannel.h"

#include "Support/Uuid.h"

#include <libsoup/soup.h>

#include <array>
#include <optional>

namespace tarn::gtk {

namespace {

std::optional<std::string> readBody(WebKitURISchemeRequest* request, std::size_t limit)
{
    std::string body;
    auto* const stream = webkit_uri_scheme_request_get_http_body(request);
    if (!stream)
        return body;
    std::array<char, 4096> buffer {};
    while (true) {
        // The engine hands the whole body over in memory: this does not wait.
        auto const count = g_input_stream_read(stream, buffer.data(), buffer.size(), nullptr, nullptr);
        if (count <= 0)
            return count == 0 ? std::optional(std::move(body)) : std::nullopt;
        body.append(buffer.data(), static_cast<std::size_t>(count));
        if (body.size() > limit)
            return std::nullopt;
    }
}

void refuse(WebKitURISchemeRequest* request)
{
    auto* const error = g_error_new_literal(G_IO_ERROR, G_IO_ERROR_PERMISSION_DENIED, "refused");
    webkit_uri_scheme_request_finish_error(request, error);
    g_error_free(error);
}

void acknowledge(WebKitURISchemeRequest* request, char const* origin)
{
    auto const stream = adopt(g_memory_input_stream_new());
    auto const response = adopt(webkit_uri_scheme_response_new(stream.get(), 0));
    webkit_uri_scheme_response_set_content_type(response.get(), "text/plain");
    auto* const headers = soup_message_headers_new(SOUP_MESSAGE_HEADERS_RESPONSE);
    soup_message_headers_append(headers, "Access-Control-Allow-Origin", origin);
    webkit_uri_scheme_response_set_http_headers(response.get(), headers);
    webkit_uri_scheme_request_finish_with_response(request, response.get());
}

}

MessageChannel::MessageChannel(WebKitWebContext* context)
    : m_nonce(Uuid::random().string())
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

Ref<WebKitUserContentManager> MessageChannel::contentManagerWithScript(std::string_view source) const
{
    auto const script = "(" + std::string(source) + ")((name, text) => fetch('" + scheme
        + "://' + name + '/', { method: 'POST', headers: { 'Content-Type': 'text/plain' }, body: '" + m_nonce
        + "\\n' + text }).catch(() => {}));";
    auto manager = adopt(webkit_user_content_manager_new());
    auto* const userScript = webkit_user_script_new_for_world(script.c_str(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
        WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, scriptWorld, nullptr, nullptr);
    webkit_user_content_manager_add_script(manager.get(), userScript);
    webkit_user_script_unref(userScript);
    return manager;
}

void MessageChannel::handle(WebKitURISchemeRequest* request) const
{
    auto const receiver = m_receivers.find(webkit_uri_scheme_request_get_web_view(request));
    auto* const headers = webkit_uri_scheme_request_get_http_headers(request);
    auto const* const origin = headers ? soup_message_headers_get_one(headers, "Origin") : nullptr;
    auto const body = readBody(request, maximumBody + m_nonce.size() + 1);
    if (receiver == m_receivers.end() || !origin || !body || !body->starts_with(m_nonce + "\n")) {
        refuse(request);
        return;
    }

    std::string_view name = webkit_uri_scheme_request_get_uri(request);
    name.remove_prefix(std::string_view(scheme).size() + 3);
    name = name.substr(0, name.find('/'));
    auto const handler = receiver->second;
    handler({ .name = name, .origin = origin, .body = std::string_view(*body).substr(m_nonce.size() + 1) });
    acknowledge(request, origin);
}

}
