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

std::optional<Url> parsedIfAny(std::string_view text)
{
    return Url::parse(text);
}

// "allow", "ask URL" or "open URL".
std::string described(Decision const& decision)
{
    return std::visit(Cases {
                          [](Ask const& ask) { return "ask " + ask.url.string(); },
                          [](OpenExternally const& open) { return "open " + open.url.string(); },
                          [](Allow) { return std::string("allow"); },
                      },
        decision);
}

std::string popup(std::string_view to, std::string_view from)
{
    return described(LinkPolicy::popup(parsedIfAny(to), parsedIfAny(from)));
}

std::string click(std::string_view to, std::string_view from)
{
    return described(LinkPolicy::navigation(parsed(to), parsedIfAny(from), LinkActivated::yes));
}

TEST(LinkPolicyTest, ResolvesGoogleRedirects)
{
    struct Case {
        std::string_view url;
        // Empty when the URL is no redirect link.
        std::string_view target;
    };
    static constexpr Case cases[] {
        { redirectToNews, "https://news.example/a?b=1" },
        { "https://google.com/url?q=http://news.example", "http://news.example/" },
        { "HTTP://WWW.GOOGLE.COM:8080/%75rl?%71=HTTP:news.example", "http://news.example/" },
        { "https://www.google.com/x/../url?q=https://news.example/", "https://news.example/" },
        { "https://www.google.com/url?q=mailto:a@b.example", "mailto:a@b.example" },
        { "https://www.google.com/url?q=https://a.example/&q=https://b.example/", "https://a.example/" },
        { "https://www.google.com/url?q=https://a%40mail.google.com/", "https://a@mail.google.com/" },
        { "https://www.google.com/url/?q=https://news.example/", {} },
        { "https://www.google.com/URL?q=https://news.example/", {} },
        { "https://www.google.com//url?q=https://news.example/", {} },
        { "https://www.google.com/url2?q=https://news.example/", {} },
        { "https://mail.google.com/url?q=https://news.example/", {} },
        { "https://www.google.com./url?q=https://news.example/", {} },
        { "https://www.google.com.evil.example/url?q=https://news.example/", {} },
        { "https://wwwgoogle.com/url?q=https://news.example/", {} },
        { "https://www.google.de/url?q=https://news.example/", {} },
        { "https://www.google.com/url", {} },
        { "https://www.google.com/url?", {} },
        { "https://www.google.com/url?q", {} },
        { "https://www.google.com/url?q=", {} },
        { "https://www.google.com/url?q&q=https://news.example/", {} },
        { "https://www.google.com/url?Q=https://news.example/", {} },
        { "https://www.google.com/url?url=https://news.example/", {} },
        { "https://www.google.com/url#?q=https://news.example/", {} },
        { "https://www.google.com/url?q=/search", {} },
        { "https://www.google.com/url?q=//news.example/", {} },
        { "https://www.google.com/url?q=news.example", {} },
        { "https://www.google.com/url?q=https://a%2520b/", {} },
        { "app://www.google.com/url?q=https://news.example/", {} },
    };
    for (auto const& [url, target] : cases)
        EXPECT_EQ(LinkPolicy::resolvingGoogleRedirect(parsed(url)), parsed(target.empty() ? url : target)) << url;
}

TEST(LinkPolicyTest, ResolvesOneRedirectOnly)
{
    std::string_view const inner { "https://www.google.com/url?q=https%3A%2F%2Fnews.example%2F" };
    auto const outer = parsed("https://www.google.com/").withQueryItems({ { "q", std::string(inner) } });
    auto const link = parsed("https://www.google.com/url?" + std::string(outer.query().value()));
    EXPECT_EQ(LinkPolicy::resolvingGoogleRedirect(link), parsed(inner));
    // The inner link is on a Google host: the page stays, and its server goes on.
    EXPECT_EQ(click(link.string(), mail), "allow");
}

TEST(LinkPolicyTest, KnowsTheGoogleApps)
{
    for (auto const app : GoogleApp::allCases)
        EXPECT_TRUE(LinkPolicy::isGoogleApp(app.url())) << app.rawValue();
    for (auto const url : { "https://docs.google.com/document/d/1", "https://sheets.google.com/",
             "https://slides.google.com/", "https://accounts.google.com/AddSession", "https://myaccount.google.com/",
             "http://MAIL.google.com:8080/", "https://accounts.google.com/servicelogin",
             "https://evil@mail.google.com/", "https://www.google.com/url?q=https://drive.google.com/" })
        EXPECT_TRUE(LinkPolicy::isGoogleApp(parsed(url))) << url;
    for (auto const url : {
             "https://google.com/",
             "https://www.google.com/",
             "https://a.docs.google.com/",
             "https://mail.google.com./",
             "https://mail.google.com.evil.example/",
             "https://mail.google.com@evil.example/",
             "https://evil.example/mail.google.com",
             "https://accounts.google.com/ServiceLogin?continue=x",
             "https://accounts.google.com/v3/ServiceLoginAuth",
             "https://accounts.google.com/%53erviceLogin",
             "https://accounts.google.com/CheckCookie",
             "https://mail.google.com/a/example.com/acs",
             "https://mail.google.com/a/example.com/%61cs/",
             "https://www.google.com/url?q=https://accounts.google.com/ServiceLogin",
             // Not served by the host that they show.
             "javascript://mail.google.com/%0Aalert(1)",
             "data://mail.google.com/,x",
             "blob:https://mail.google.com/1",
             "ftp://mail.google.com/",
             "https://www.google.com/url?q=javascript://mail.google.com/%250Aalert(1)",
         })
        EXPECT_FALSE(LinkPolicy::isGoogleApp(parsed(url))) << url;
}

TEST(LinkPolicyTest, KnowsWhatBelongsToTheSignIn)
{
    for (auto const host : { "google.com", "www.google.com", "mail.google.com", "a.docs.google.com",
             "accounts.google.com", "login.microsoftonline.com", "a.login.microsoftonline.com", "microsoft.com",
             "aka.microsoft.com", "okta.com", "company.okta.com", "ok1static.oktacdn.com", "company.oktapreview.com",
             "a.duofederal.com", "api-1.duosecurity.com", "aadcdn.msauth.net", "login.live.com", "microsoftonline.com",
             "x.y.windows.net", "o1.ingest.sentry.io" })
        EXPECT_TRUE(LinkPolicy::isInternal(parsed("https://" + std::string(host) + "/x"))) << host;
    for (auto const host : { "evilgoogle.com", "google.com.evil.example", "google.de", "google.com.",
             "mail.google.com.", "notokta.com", "okta.com.evil.example", "xlive.com", "olive.com", "evil-microsoft.com",
             "windows.net.example", "com", "sentry.io.", "127.0.0.1", "[::1]" })
        EXPECT_FALSE(LinkPolicy::isInternal(parsed("https://" + std::string(host) + "/x"))) << host;
    EXPECT_FALSE(LinkPolicy::isInternal(parsed("https://www.google.com/url?q=https://news.example/")));
    EXPECT_FALSE(LinkPolicy::isInternal(parsed("data://login.live.com/,x")));
    EXPECT_FALSE(LinkPolicy::isInternal(parsed("mailto:a@google.com")));
}

TEST(LinkPolicyTest, Popups)
{
    struct Case {
        std::string_view to;
        std::string_view from;
        std::string_view decision;
    };
    static constexpr Case cases[] {
        { "", mail, "allow" },
        { "about:blank", mail, "allow" },
        { "about:blank", "", "allow" },
        { "about:blank#x", mail, "open about:blank#x" },
        { "mailto:a@b.example", mail, "open mailto:a@b.example" },
        { "zoommtg://join?x", mail, "open zoommtg://join?x" },
        { "javascript://mail.google.com/%0Ax", mail, "open javascript://mail.google.com/%0Ax" },
        // The same host, whatever it is, as it is asked for: a redirect link is not resolved.
        { "https://mail.google.com/popout", mail, "allow" },
        { "https://news.example/b", "http://news.example:8080/a", "allow" },
        { redirectToNews, "https://www.google.com/search", "allow" },
        { "https://calendar.google.com/", mail, "ask https://calendar.google.com/" },
        { "https://mail.google.com/x", "", "ask https://mail.google.com/x" },
        { "https://www.google.com/url?q=https://drive.google.com/x", mail, "ask https://drive.google.com/x" },
        { "https://www.google.com/url?q=https://mail.google.com/x", mail, "ask https://mail.google.com/x" },
        { "https://accounts.google.com/ServiceLogin", mail, "allow" },
        { "https://accounts.google.com/AddSession", mail, "ask https://accounts.google.com/AddSession" },
        { "https://company.okta.com/login", mail, "allow" },
        { "https://news.example/a", mail, "open https://news.example/a" },
        { redirectToNews, mail, "open https://news.example/a?b=1" },
        { "https://mail.google.com./", mail, "open https://mail.google.com./" },
        { "https://mail.google.com@evil.example/", mail, "open https://mail.google.com@evil.example/" },
        { "blob:https://mail.google.com/1", mail, "open blob:https://mail.google.com/1" },
        { "data:text/html,x", mail, "open data:text/html,x" },
        { "data://mail.google.com/,x", mail, "open data://mail.google.com/,x" },
    };
    for (auto const& [to, from, decision] : cases)
        EXPECT_EQ(popup(to, from), decision) << to << " from " << from;
}

TEST(LinkPolicyTest, ActivatedLinks)
{
    struct Case {
        std::string_view to;
        std::string_view from;
        std::string_view decision;
    };
    static constexpr Case cases[] {
        { "about:blank", mail, "open about:blank" },
        { "mailto:a@b.example", mail, "open mailto:a@b.example" },
        // Within one app, also by way of a redirect link.
        { "https://mail.google.com/x", mail, "allow" },
        { "https://www.google.com/url?q=https://mail.google.com/x", mail, "allow" },
        { "https://calendar.google.com/r/week", "https://calendar.google.com/r", "allow" },
        { "https://calendar.google.com/", mail, "ask https://calendar.google.com/" },
        { "https://calendar.google.com/", "", "ask https://calendar.google.com/" },
        { "https://www.google.com/url?q=https://drive.google.com/x", mail, "ask https://drive.google.com/x" },
        { "https://accounts.google.com/ServiceLogin", mail, "allow" },
        { "https://a.docs.google.com/", mail, "allow" },
        { "https://login.microsoftonline.com/x", mail, "allow" },
        { "https://news.example/a", mail, "open https://news.example/a" },
        { redirectToNews, mail, "open https://news.example/a?b=1" },
        { redirectToNews, "https://www.google.com/search", "open https://news.example/a?b=1" },
        // Unlike a popup, a link to the same host is allowed on the apps only.
        { "https://news.example/b", "https://news.example/a", "open https://news.example/b" },
        { "https://www.google.com/url?q=mailto:a@b.example", mail, "open mailto:a@b.example" },
        { "https://www.google.com/url?q=javascript://mail.google.com/x", mail, "open javascript://mail.google.com/x" },
    };
    for (auto const& [to, from, decision] : cases)
        EXPECT_EQ(click(to, from), decision) << to << " from " << from;
}

TEST(LinkPolicyTest, WhatNobodyClickedGoesOnInPlace)
{
    for (auto const to : { "https://news.example/", "https://calendar.google.com/", "about:blank", "data:,x" })
        EXPECT_EQ(described(LinkPolicy::navigation(parsed(to), parsed(mail), LinkActivated::no)), "allow") << to;
    EXPECT_EQ(described(LinkPolicy::navigation(parsed("tel:1"), parsed(mail), LinkActivated::no)), "open tel:1");
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
                    EXPECT_TRUE(ask->url.scheme() == "https" || ask->url.scheme() == "http") << ask->url.string();
                    EXPECT_TRUE(ask->url.host().ends_with(".google.com")) << ask->url.string();
                }
            }
            if (to->host().find("evil.example") != std::string_view::npos) {
                EXPECT_FALSE(LinkPolicy::isInternal(*to));
                EXPECT_FALSE(LinkPolicy::isGoogleApp(*to));
            }
        }
    }
}

}

}
