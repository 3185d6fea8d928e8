#pragma once

#include "Mailboxes.h"
#include "Pages.h"
#include "Ref.h"
#include "Request.h"
#include "RequestLog.h"
#include "SignInService.h"
#include "StageEndpoints.h"

#include <gio/gio.h>
#include <libsoup/soup.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarn::stage {

struct StageOptions {
    // Gets one JSON object per request, appended and flushed.
    std::optional<std::filesystem::path> logFile;
    SignIn signIn { SignIn::byHand };
};

// The stand-in services: an HTTP proxy on loopback that answers for every host name itself, by http and https, and
// reaches no network. It works in the thread and main context it was made in, between the caller's own events.
class StageServer {
public:
    // Listens at once. Throws std::runtime_error.
    explicit StageServer(std::filesystem::path services = defaultServices(), StageOptions = {});
    StageServer(StageServer const&) = delete;
    StageServer& operator=(StageServer const&) = delete;
    ~StageServer();

    // The folder that the build knows.
    static std::filesystem::path defaultServices();

    // On 127.0.0.1.
    unsigned short port() const;
    // What a session under test is given as its proxy for all schemes.
    std::string proxyUri() const;
    // Shown for every https host; self-signed, so a session has to be told to accept it. Stays owned by the server.
    GTlsCertificate* certificate() const { return m_certificate.get(); }

    // Called for each request, before it is answered.
    std::function<void(Request const&)> onRequest;
    std::vector<Request> const& requests() const { return m_log.requests(); }
    void clearRequests() { m_log.clear(); }

    // The pages follow each change.
    Mailboxes& mailboxes() { return m_mailboxes; }

private:
    void handle(SoupServerMessage*);
    void tunnel(SoupServerMessage*);
    Response respond(Request const&);
    Pages::Values valuesFor(Request const&) const;

    Ref<GTlsCertificate> m_certificate;
    Pages m_pages;
    RequestLog m_log;
    SignInService m_signIn;
    Mailboxes m_mailboxes;
    Ref<SoupServer> m_server;
    StageEndpoints m_endpoints { m_mailboxes };
};

}
