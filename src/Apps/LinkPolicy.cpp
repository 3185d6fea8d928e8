#include "Apps/LinkPolicy.h"

#include <algorithm>
#include <array>

namespace tarn::LinkPolicy {

namespace {

constexpr std::string_view googleDomain { "google.com" };

constexpr std::array<std::string_view, 2> redirectHosts { googleDomain, "www.google.com" };

constexpr std::array<std::string_view, 12> googleAppHosts {
    "mail.google.com",
    "calendar.google.com",
    "drive.google.com",
    "docs.google.com",
    "sheets.google.com",
    "slides.google.com",
    "gemini.google.com",
    "keep.google.com",
    "tasks.google.com",
    "contacts.google.com",
    accountsHost,
    "myaccount.google.com",
};

// Of sign-in providers, and of the error reporting that their pages load.
constexpr std::array<std::string_view, 12> internalDomains {
    "login.microsoftonline.com",
    "microsoft.com",
    "okta.com",
    "oktacdn.com",
    "oktapreview.com",
    "duofederal.com",
    "duosecurity.com",
    "msauth.net",
    "live.com",
    "microsoftonline.com",
    "windows.net",
    "sentry.io",
};

// Paths of single sign-on and of the accounts host that are steps on the way into an app.
constexpr std::array<std::string_view, 3> signInPaths { "/acs", "/ServiceLogin", "/CheckCookie" };

constexpr std::array<std::string_view, 5> webSchemes { "https", "http", "about", "blob", "data" };

template <typename Table> bool contains(Table const& table, std::string_view entry)
{
    return std::ranges::find(table, entry) != table.end();
}

// Lower case, as Url serialises it.
std::string_view serverHost(Url const& url)
{
    return url.scheme() == "https" || url.scheme() == "http" ? url.host() : std::string_view {};
}

bool isInDomain(std::string_view host, std::string_view domain)
{
    if (!host.ends_with(domain))
        return false;
    host.remove_suffix(domain.size());
    return host.empty() || host.ends_with('.');
}

// Servers see the path decoded.
template <typename Predicate> bool testDecodedPath(Url const& url, Predicate predicate)
{
    auto const path = url.path();
    return path.find('%') == path.npos ? predicate(path) : predicate(std::string_view(url.decodedPath()));
}

std::optional<Url> redirectTarget(Url const& url)
{
    if (!contains(redirectHosts, serverHost(url)))
        return std::nullopt;
    if (!testDecodedPath(url, [](std::string_view path) { return path == "/url"; }))
        return std::nullopt;
    auto const target = url.firstQueryValue("q");
    return target ? Url::parse(*target) : std::nullopt;
}

// A URL and what it leads to, which is found once for all the questions of a decision.
class ResolvedUrl {
public:
    explicit ResolvedUrl(Url const& url)
        : m_target(redirectTarget(url))
        , m_url(m_target ? *m_target : url)
    {
    }
    ResolvedUrl(ResolvedUrl const&) = delete;
    ResolvedUrl& operator=(ResolvedUrl const&) = delete;

    Url const& url() const { return m_url; }

    bool isGoogleApp() const
    {
        return contains(googleAppHosts, serverHost(m_url)) && !testDecodedPath(m_url, [](std::string_view path) {
            return std::ranges::any_of(signInPaths, [&](auto step) { return path.find(step) != path.npos; });
        });
    }

    bool isInternal() const
    {
        auto const host = serverHost(m_url);
        return isInDomain(host, googleDomain)
            || std::ranges::any_of(internalDomains, [&](auto domain) { return isInDomain(host, domain); });
    }

private:
    std::optional<Url> m_target;
    Url const& m_url;
};

bool sameHost(std::optional<Url> const& a, Url const& b)
{
    return a && !serverHost(b).empty() && serverHost(*a) == serverHost(b);
}

}

Decision popup(std::optional<Url> const& to, std::optional<Url> const& from)
{
    if (!to || to->string() == "about:blank")
        return Allow {};
    if (!isWebScheme(*to))
        return OpenExternally { *to };
    if (sameHost(from, *to))
        return Allow {};
    ResolvedUrl const resolved { *to };
    if (resolved.isGoogleApp())
        return Ask { resolved.url() };
    if (resolved.isInternal())
        return Allow {};
    return OpenExternally { resolved.url() };
}

Decision navigation(Url const& to, std::optional<Url> const& from, LinkActivated linkActivated)
{
    if (!isWebScheme(to))
        return OpenExternally { to };
    if (linkActivated == LinkActivated::no)
        return Allow {};
    ResolvedUrl const resolved { to };
    if (resolved.isGoogleApp()) {
        if (sameHost(from, resolved.url()))
            return Allow {};
        return Ask { resolved.url() };
    }
    if (resolved.isInternal())
        return Allow {};
    return OpenExternally { resolved.url() };
}

Url resolvingGoogleRedirect(Url const& url)
{
    return redirectTarget(url).value_or(url);
}

bool isGoogleApp(Url const& url)
{
    return ResolvedUrl(url).isGoogleApp();
}

bool isInternal(Url const& url)
{
    return ResolvedUrl(url).isInternal();
}

bool isWebScheme(Url const& url)
{
    return contains(webSchemes, url.scheme());
}

}
