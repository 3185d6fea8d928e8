#include "StageServer.h"

#include "Certificate.h"
#include "Text.h"

#include <stdexcept>

namespace tarn::stage {

namespace {

// Script and data only from the page's own host, as the real pages have it.
constexpr char const* contentPolicy
    = "default-src 'self'; style-src 'self' 'unsafe-inline'; img-src 'self' data: blob:; "
      "frame-src 'self' https:; form-action https: http:; base-uri 'none'";

Request requestOf(SoupServerMessage* message)
{
    auto* const uri = soup_server_message_get_uri(message);
    auto* const headers = soup_server_message_get_request_headers(message);
    auto const text = [](char const* value) { return std::string(value ? value : ""); };
    Request request { soup_server_message_get_method(message), {}, g_uri_get_path(uri), text(g_uri_get_query(uri)), {},
        text(soup_message_headers_get_one(headers, "User-Agent")), {}, {} };
    auto* const host = g_ascii_strdown(text(g_uri_get_host(uri)).c_str(), -1);
    request.host = host;
    g_free(host);
    request.cookies = text(soup_message_headers_get_list(headers, "Cookie"));
    request.account = SignInService::accountIn(request.cookies);
    auto const* const body = soup_server_message_get_request_body(message);
    request.body.assign(body->data ? body->data : "", static_cast<std::size_t>(body->length));
    return request;
}

}

StageServer::StageServer(std::filesystem::path services, StageOptions options)
    : m_certificate(makeCertificate())
    , m_pages(std::move(services))
    , m_log(options.logFile)
    , m_signIn(m_pages, options.signIn)
    , m_server(Ref<SoupServer>::adopt(soup_server_new("raw-paths", TRUE, nullptr)))
{
    soup_server_add_handler(
        m_server.get(), nullptr,
        [](SoupServer*, SoupServerMessage* message, char const*, GHashTable*, gpointer self) {
            static_cast<StageServer*>(self)->handle(message);
        },
        this, nullptr);
    GError* error = nullptr;
    if (!soup_server_listen_local(m_server.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, &error)) {
        std::string const reason = error->message;
        g_error_free(error);
        throw std::runtime_error("cannot listen: " + reason);
    }
}

StageServer::~StageServer()
{
    soup_server_disconnect(m_server.get());
}

std::filesystem::path StageServer::defaultServices()
{
    return TARN_STAGE_SERVICES;
}

unsigned short StageServer::port() const
{
    auto* const uris = soup_server_get_uris(m_server.get());
    auto const port = static_cast<unsigned short>(g_uri_get_port(static_cast<GUri*>(uris->data)));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    return port;
}

std::string StageServer::proxyUri() const
{
    return "http://127.0.0.1:" + std::to_string(port());
}

void StageServer::handle(SoupServerMessage* message)
{
    if (std::string_view(soup_server_message_get_method(message)) == "CONNECT") {
        tunnel(message);
        return;
    }
    auto const request = requestOf(message);
    m_log.add(request);
    if (onRequest)
        onRequest(request);
    if (!request.account.empty())
        m_signIn.noticed(request.account);
    if (!m_endpoints.answer(message, request))
        send(message, respond(request));
}

void StageServer::tunnel(SoupServerMessage* message)
{
    soup_server_message_set_status(message, 200, "Connection established");
    g_signal_connect(message, "wrote-body", G_CALLBACK(+[](SoupServerMessage* established, gpointer data) {
        auto* const self = static_cast<StageServer*>(data);
        auto const raw = Ref<GIOStream>::adopt(soup_server_message_steal_connection(established));
        auto const secure = Ref<GIOStream>::adopt(g_tls_server_connection_new(raw.get(), self->certificate(), nullptr));
        soup_server_accept_iostream(self->m_server.get(), secure.get(),
            soup_server_message_get_local_address(established), soup_server_message_get_remote_address(established),
            nullptr);
    }),
        this);
}

Response StageServer::respond(Request const& request)
{
    // The redirecting links of the search host lead on.
    if ((request.host == "www.google.com" || request.host == "google.com") && request.path == "/url") {
        auto const target = formValue(request.query, "q").value_or("");
        if (isPrintableAscii(target) && (target.starts_with("https://") || target.starts_with("http://")))
            return Response::redirect(target);
    }
    auto const values = valuesFor(request);
    if (auto response = m_signIn.answer(request, values))
        return *response;
    auto const& service = serviceOf(request.host);
    auto const match = m_pages.match(service, request.path);
    bool const shared = request.path.starts_with("/_stage/");
    if (service.access == Service::Access::signedIn && !shared && match.isPage() && request.account.empty())
        return SignInService::toSignIn(
            "https://" + request.host + request.path + (request.query.empty() ? "" : "?" + request.query));
    auto response = m_pages.read(match, values);
    if (match.isPage())
        response.headers.emplace_back("Content-Security-Policy", contentPolicy);
    return response;
}

Pages::Values StageServer::valuesFor(Request const& request) const
{
    auto const unread = m_mailboxes.unread(request.account);
    Pages::Values values { { "host", request.host }, { "path", request.path }, { "unread", std::to_string(unread) },
        { "unread.inTitle", unread ? " (" + std::to_string(unread) + ")" : "" } };
    for (auto const& account : accounts()) {
        auto const id = std::string(account.id);
        values[id + ".name"] = account.name;
        values[id + ".email"] = account.email;
    }
    if (auto const* const account = accountWithId(request.account))
        SignInService::setAccount(values, *account);
    return values;
}

}
