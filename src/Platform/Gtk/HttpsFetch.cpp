#include "Platform/Gtk/HttpsFetch.h"

#include <algorithm>

namespace tarn::gtk {

namespace {

constexpr std::size_t chunk = 64UL * 1024;
constexpr int mostRedirects = 5;

bool wasCancelled(GError const* error)
{
    return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
}

}

HttpsFetch::HttpsFetch(Ref<SoupSession> session, Url const& url, Limits limits, std::function<void(double)> progress,
    Reply<platform::FetchResult> reply)
    : m_session(std::move(session))
    , m_limits(limits)
    , m_progress(std::move(progress))
    , m_reply(std::move(reply))
    , m_deadline(RunLoop().after(limits.time, [this] { fail("The server took too long to answer."); }))
{
    request(url);
}

HttpsFetch::~HttpsFetch()
{
    // What is on its way comes back with this error, and then touches nothing here.
    g_cancellable_cancel(m_cancellable.get());
}

void HttpsFetch::cancel()
{
    end({});
}

void HttpsFetch::request(Url const& url)
{
    if (url.scheme() != "https") {
        fail("The server sends to an address that is not secure.");
        return;
    }
    m_message = adopt(soup_message_new("GET", url.string().c_str()));
    if (!m_message) {
        fail("The address of the server cannot be used.");
        return;
    }
    // The toolkit would follow a redirect to plain HTTP.
    soup_message_add_flags(m_message.get(), SOUP_MESSAGE_NO_REDIRECT);
    soup_message_disable_feature(m_message.get(), SOUP_TYPE_COOKIE_JAR);
    soup_session_send_async(
        m_session.get(), m_message.get(), G_PRIORITY_DEFAULT, m_cancellable.get(),
        [](GObject* session, GAsyncResult* result, gpointer self) {
            GError* error = nullptr;
            auto const stream = adopt(soup_session_send_finish(SOUP_SESSION(session), result, &error));
            if (!wasCancelled(error)) {
                auto* const fetch = static_cast<HttpsFetch*>(self);
                fetch->m_stream = stream;
                if (error)
                    fetch->fail(std::string("The server cannot be reached safely: ") + error->message + ".");
                else
                    fetch->answered();
            }
            g_clear_error(&error);
        },
        this);
}

void HttpsFetch::answered()
{
    auto const status = soup_message_get_status(m_message.get());
    if (status >= 300 && status < 400) {
        redirect();
        return;
    }
    if (status != SOUP_STATUS_OK) {
        fail("The server answers with error " + std::to_string(status) + ".");
        return;
    }
    auto const announced = soup_message_headers_get_content_length(soup_message_get_response_headers(m_message.get()));
    if (announced > 0 && static_cast<std::size_t>(announced) > m_limits.bytes) {
        fail("The server sends more than it should.");
        return;
    }
    read();
}

void HttpsFetch::redirect()
{
    auto const* const location
        = soup_message_headers_get_one(soup_message_get_response_headers(m_message.get()), "Location");
    auto* resolved = location
        ? g_uri_parse_relative(soup_message_get_uri(m_message.get()), location, GUriFlags(SOUP_HTTP_URI_FLAGS), nullptr)
        : nullptr;
    if (!resolved || ++m_redirects > mostRedirects) {
        g_clear_pointer(&resolved, g_uri_unref);
        fail("The server sends from one address to the next without end.");
        return;
    }
    auto* const text = g_uri_to_string(resolved);
    auto const url = Url::parse(text);
    g_free(text);
    g_uri_unref(resolved);
    if (url)
        request(*url);
    else
        fail("The address of the server cannot be used.");
}

void HttpsFetch::read()
{
    g_input_stream_read_bytes_async(
        m_stream.get(), chunk, G_PRIORITY_DEFAULT, m_cancellable.get(),
        [](GObject* stream, GAsyncResult* result, gpointer self) {
            GError* error = nullptr;
            auto* bytes = g_input_stream_read_bytes_finish(G_INPUT_STREAM(stream), result, &error);
            if (!wasCancelled(error))
                static_cast<HttpsFetch*>(self)->chunkRead(bytes, error);
            g_clear_pointer(&bytes, g_bytes_unref);
            g_clear_error(&error);
        },
        this);
}

void HttpsFetch::chunkRead(GBytes* bytes, GError const* error)
{
    if (error) {
        fail(std::string("The connection broke off: ") + error->message + ".");
        return;
    }
    gsize size = 0;
    auto const* const data = static_cast<char const*>(g_bytes_get_data(bytes, &size));
    if (size == 0) {
        end({ .content = std::move(m_content) });
        return;
    }
    if (m_content.size() + size > m_limits.bytes) {
        fail("The server sends more than it should.");
        return;
    }
    m_content.append(data, size);
    auto const announced = soup_message_headers_get_content_length(soup_message_get_response_headers(m_message.get()));
    if (m_progress && announced > 0)
        m_progress(std::min(1.0, static_cast<double>(m_content.size()) / static_cast<double>(announced)));
    read();
}

void HttpsFetch::fail(std::string problem)
{
    end({ .problem = std::move(problem) });
}

void HttpsFetch::end(platform::FetchResult result)
{
    m_deadline.reset();
    g_cancellable_cancel(m_cancellable.get());
    // The answer may destroy this object.
    auto reply = std::move(m_reply);
    std::move(reply)(std::move(result));
}

}
