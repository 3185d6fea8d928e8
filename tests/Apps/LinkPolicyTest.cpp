#include "Apps/LinkPolicy.h"

#include "Apps/GoogleApp.h"
#include "Fakes/HostileUrls.h"
#include "Support/Cases.h"

#include <gtest/gtest.h>

namespace tarn {

namespace {

using LinkPolicy::Allow;
using LinkPolicy::Ask;
using LinkPolicy::Decision;
using LinkPolicy::LinkActivated;
using LinkPolicy::OpenExternally;

constexpr std::string_view mail { "https://mail.google.com/mail/u/0/#inbox" };
constexpr std::string_view redirectToNews {
    "https://www.google.com/url?sa=D&q=https%3A%2F%2Fnews.example%2Fa%3Fb%3D1&ust=1"
};

Url parsed(std::string_view text)
{
    return Url::parse(text).value();
}

// "allow", "ask" or "open", and the URL where it is not the one asked about.
std::string described(Decision const& decision, std::optional<Url> const& to)
{
    auto const named = [&](std::string_view word, Url const& url) {
        return std::string(word) + (url == to ? "" : ' ' + url.string());
    };
    return std::visit(Cases {
                          [&](Ask const& ask) { return named("ask", ask.url); },
                          [&](OpenExternally const& open) { return named("open", open.url); },
                          [](Allow) { return std::string("allow"); },
                      },
        decision);
}

TEST(LinkPolicyTest, ResolvesGoogleRedirectsOnce)
{
    std::pair<std::string_view, std::string_view> const links[] {
        { redirectToNews, "https://news.example/a?b=1" },
        { "HTTP://GOOGLE.COM:8080/x/../%75rl?%71=HTTP:news.example", "http://news.example/" },
        { "https://www.google.com/url?q=mailto:a@b.example", "mailto:a@b.example" },
        { "https://www.google.com/url?q=https://a.example/&q=https://b.example/", "https://a.example/" },
        { "https://www.google.com/url?q=https://www.google.com/url?q=https://news.example/",
            "https://www.google.com/url?q=https://news.example/" },
    };
    for (auto const& [link, target] : links)
        EXPECT_EQ(LinkPolicy::resolvingGoogleRedirect(parsed(link)), parsed(target)) << link;

    for (auto const link :
        { "https://www.google.com/url/?q=https://news.example/", "https://www.google.com/URL?q=https://news.example/",
            "https://www.google.com//url?q=https://news.example/",
            "https://mail.google.com/url?q=https://news.example/",
            "https://www.google.com./url?q=https://news.example/",
            "https://www.google.com.evil.example/url?q=https://news.example/", "https://www.google.com/url",
            "https://www.google.com/url?q=", "https://www.google.com/url?q&q=https://news.example/",
            "https://www.google.com/url?url=https://news.example/",
            "https://www.google.com/url#?q=https://news.example/", "https://www.google.com/url?q=//news.example/",
            "https://www.google.com/url?q=https://a%2520b/", "app://www.google.com/url?q=https://news.example/" })
        EXPECT_EQ(LinkPolicy::resolvingGoogleRedirect(parsed(link)), parsed(link)) << link;
}

TEST(LinkPolicyTest, KnowsTheGoogleApps)
{
    for (auto const app : GoogleApp::allCases)
        EXPECT_TRUE(LinkPolicy::isGoogleApp(app.url())) << app.rawValue();
    for (auto const url : { "https://docs.google.com/document/d/1", "https://sheets.google.com/",
             "https://slides.google.com/", "https://accounts.google.com/servicelogin", "https://myaccount.google.com/",
             "http://evil@MAIL.google.com:8080/", "https://www.google.com/url?q=https://drive.google.com/" })
        EXPECT_TRUE(LinkPolicy::isGoogleApp(parsed(url))) << url;
    for (auto const url : { "https://www.google.com/", "https://a.docs.google.com/", "https://mail.google.com./",
             "https://mail.google.com.evil.example/", "https://mail.google.com@evil.example/",
             "https://accounts.google.com/v3/ServiceLoginAuth", "https://accounts.google.com/%53erviceLogin",
             "https://accounts.google.com/CheckCookie", "https://mail.google.com/a/example.com/%61cs/",
             "https://www.google.com/url?q=https://accounts.google.com/ServiceLogin",
             // Not served by the host that they show.
             "javascript://mail.google.com/%0Aalert(1)", "data://mail.google.com/,x", "ftp://mail.google.com/",
             "https://www.google.com/url?q=javascript://mail.google.com/%250Aalert(1)" })
        EXPECT_FALSE(LinkPolicy::isGoogleApp(parsed(url))) << url;
}

TEST(LinkPolicyTest, KnowsWhatBelongsToTheSignIn)
{
    for (auto const host :
        { "google.com", "a.docs.google.com", "a.login.microsoftonline.com", "microsoft.com", "company.okta.com",
            "ok1static.oktacdn.com", "company.oktapreview.com", "a.duofederal.com", "api-1.duosecurity.com",
            "aadcdn.msauth.net", "login.live.com", "microsoftonline.com", "x.y.windows.net", "o1.ingest.sentry.io" })
        EXPECT_TRUE(LinkPolicy::isInternal(parsed("https://" + std::string(host) + "/x"))) << host;
    for (auto const host : { "evilgoogle.com", "google.com.evil.example", "google.de", "mail.google.com.",
             "notokta.com", "evil-microsoft.com", "windows.net.example", "com", "[::1]" })
        EXPECT_FALSE(LinkPolicy::isInternal(parsed("https://" + std::string(host) + "/x"))) << host;
    EXPECT_FALSE(LinkPolicy::isInternal(parsed(redirectToNews)));
    EXPECT_FALSE(LinkPolicy::isInternal(parsed("data://login.live.com/,x")));
    EXPECT_FALSE(LinkPolicy::isInternal(parsed("mailto:a@google.com")));
}

TEST(LinkPolicyTest, PopupsAndLinks)
{
    struct Case {
        std::string_view to;
        std::string_view popup;
        std::string_view click;
        std::string_view from { mail };
    };
    static constexpr Case cases[] {
        { "about:blank", "allow", "open" },
        { "about:blank#x", "open", "open" },
        { "mailto:a@b.example", "open", "open" },
        { "javascript://mail.google.com/%0Ax", "open", "open" },
        { "blob:https://mail.google.com/1", "open", "open" },
        { "data://mail.google.com/,x", "open", "open" },
        { "https://mail.google.com/popout", "allow", "allow" },
        { "https://mail.google.com/x", "ask", "ask", "" },
        { "https://calendar.google.com/", "ask", "ask" },
        { "https://accounts.google.com/AddSession", "ask", "ask" },
        { "https://accounts.google.com/ServiceLogin", "allow", "allow" },
        { "https://company.okta.com/login", "allow", "allow" },
        { "https://news.example/a", "open", "open" },
        { "https://mail.google.com./", "open", "open" },
        { "https://mail.google.com@evil.example/", "open", "open" },
        // A popup of the same host, whatever it is; a link within one app only.
        { "https://news.example/b", "allow", "open", "http://news.example:8080/a" },
        // The same host as it is asked for, or by way of a redirect link.
        { redirectToNews, "open https://news.example/a?b=1", "open https://news.example/a?b=1" },
        { redirectToNews, "allow", "open https://news.example/a?b=1", "https://www.google.com/search" },
        { "https://www.google.com/url?q=https://drive.google.com/x", "ask https://drive.google.com/x",
            "ask https://drive.google.com/x" },
        { "https://www.google.com/url?q=https://mail.google.com/x", "ask https://mail.google.com/x", "allow" },
        { "https://www.google.com/url?q=javascript://mail.google.com/x", "open javascript://mail.google.com/x",
            "open javascript://mail.google.com/x" },
        // To a redirect link, which its server resolves.
        { "https://www.google.com/url?q=https://www.google.com/url?q=https://news.example/", "allow", "allow" },
    };
    for (auto const& [to, popup, click, from] : cases) {
        auto const target = parsed(to);
        auto const source = Url::parse(from);
        EXPECT_EQ(described(LinkPolicy::popup(target, source), target), popup) << to;
        EXPECT_EQ(described(LinkPolicy::navigation(target, source, LinkActivated::yes), target), click) << to;
    }
    EXPECT_EQ(described(LinkPolicy::popup(std::nullopt, parsed(mail)), std::nullopt), "allow");
    // What nobody clicked goes on in place.
    for (auto const to : { "https://news.example/", "https://calendar.google.com/", "about:blank", "data:,x" })
        EXPECT_EQ(described(LinkPolicy::navigation(parsed(to), parsed(mail), LinkActivated::no), {}), "allow") << to;
    auto const call = parsed("tel:1");
    EXPECT_EQ(described(LinkPolicy::navigation(call, parsed(mail), LinkActivated::no), call), "open");
}

// Whatever a page writes, directly or in a redirect link.
TEST(LinkPolicyTest, HostileLinksNeverPassForAnother)
{
    auto const redirect = parsed("https://www.google.com/url");
    for (auto const text : tests::hostileUrls) {
        for (auto const& to :
            { Url::parse(text), std::optional(redirect.withQueryItems({ { "q", std::string(text) } })) }) {
            if (!to)
                continue;
            SCOPED_TRACE(to->string());
            for (auto const& decision :
                { LinkPolicy::popup(to, parsed(mail)), LinkPolicy::navigation(*to, parsed(mail), LinkActivated::yes),
                    LinkPolicy::navigation(*to, parsed(mail), LinkActivated::no) }) {
                EXPECT_TRUE(!std::holds_alternative<Allow>(decision) || LinkPolicy::isWebScheme(*to));
                if (auto const* ask = std::get_if<Ask>(&decision)) {
                    EXPECT_TRUE(ask->url.scheme().starts_with("http") && ask->url.host().ends_with(".google.com"))
                        << ask->url.string();
                }
            }
            if (to->host().find("evil.example") != std::string_view::npos) {
                EXPECT_FALSE(LinkPolicy::isInternal(*to) || LinkPolicy::isGoogleApp(*to));
            }
        }
    }
}

}

}
