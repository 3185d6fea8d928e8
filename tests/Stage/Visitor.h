#pragma once

#include "Ref.h"

#include <gio/gio.h>
#include <libsoup/soup.h>

#include <stdexcept>
#include <string>

namespace tarn::stage {

// A browser as the stand-in services see it: a cookie jar, redirects followed, everything through the proxy.
class Visitor {
public:
    struct Answer {
        unsigned status;
        std::string url; // where the redirects ended
        std::string body;
        std::string setCookie;
    };
    enum class Redirects { follow, stay };

    explicit Visitor(std::string const& proxy)
    {
        auto const resolver = Ref<GProxyResolver>::adopt(g_simple_proxy_resolver_new(proxy.c_str(), nullptr));
        m_session = Ref<SoupSession>::adopt(
            soup_session_new_with_options("proxy-resolver", resolver.get(), "user-agent", "Visitor/1.0", nullptr));
        soup_session_add_feature_by_type(m_session.get(), SOUP_TYPE_COOKIE_JAR);
    }

    Answer get(std::string const& url) { return send(SOUP_METHOD_GET, url, nullptr, Redirects::follow); }
    Answer post(std::string const& url, std::string const& form, Redirects redirects = Redirects::follow)
    {
        return send(SOUP_METHOD_POST, url, &form, redirects);
    }

private:
    Answer send(char const* method, std::string const& url, std::string const* form, Redirects redirects)
    {
        auto const message = Ref<SoupMessage>::adopt(soup_message_new(method, url.c_str()));
        g_signal_connect(message.get(), "accept-certificate",
            G_CALLBACK(
                +[](SoupMessage*, GTlsCertificate*, GTlsCertificateFlags, gpointer) -> gboolean { return TRUE; }),
            nullptr);
        if (redirects == Redirects::stay)
            soup_message_add_flags(message.get(), SOUP_MESSAGE_NO_REDIRECT);
        if (form) {
            g_autoptr(GBytes) bytes = g_bytes_new(form->data(), form->size());
            soup_message_set_request_body_from_bytes(message.get(), "application/x-www-form-urlencoded", bytes);
        }
        auto result = Ref<GAsyncResult>();
        soup_session_send_and_read_async(
            m_session.get(), message.get(), G_PRIORITY_DEFAULT, nullptr,
            [](GObject*, GAsyncResult* done, gpointer place) {
                *static_cast<Ref<GAsyncResult>*>(place) = gtk::share(done);
            },
            &result);
        while (!result.get())
            g_main_context_iteration(nullptr, TRUE);
        g_autoptr(GError) error = nullptr;
        g_autoptr(GBytes) body = soup_session_send_and_read_finish(m_session.get(), result.get(), &error);
        if (!body)
            throw std::runtime_error(error->message);
        auto const text = [](char const* value) { return std::string(value ? value : ""); };
        auto* const headers = soup_message_get_response_headers(message.get());
        g_autofree char* end = g_uri_to_string(soup_message_get_uri(message.get()));
        auto const* const location = soup_message_headers_get_one(headers, "Location");
        return { soup_message_get_status(message.get()), location ? location : end,
            { static_cast<char const*>(g_bytes_get_data(body, nullptr)), g_bytes_get_size(body) },
            text(soup_message_headers_get_list(headers, "Set-Cookie")) };
    }

    Ref<SoupSession> m_session;
};

}
