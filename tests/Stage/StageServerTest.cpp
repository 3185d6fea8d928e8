#include "StageServer.h"

#include "Support/TemporaryFolder.h"
#include "Visitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>

namespace tarn::stage {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Redirects = Visitor::Redirects;

void write(fs::path const& file, std::string_view content)
{
    fs::create_directories(file.parent_path());
    std::ofstream(file) << content;
}

constexpr char const* challenge = "https://accounts.google.com/signin/challenge?continue=";
constexpr char const* password = "https://accounts.google.com/signin/password?continue=";
std::string const keepUrl = "https%3A%2F%2Fkeep.google.com%2Fu%2F0%2F%3Fa%3D1%26b%3D2";

TEST(StageServer, SignInLeadsThroughTheAccountsHostAndBackForAllApplications)
{
    StageServer server;
    Visitor visitor(server.proxyUri());
    auto const asked = visitor.get("https://keep.google.com/u/0/?a=1&b=2");
    EXPECT_EQ(asked.url, "https://accounts.google.com/ServiceLogin?continue=" + keepUrl);
    EXPECT_THAT(asked.body, HasSubstr("ada.winter@example.com"));
    EXPECT_THAT(visitor.post(challenge + keepUrl, "account=bo").body, HasSubstr("Hello Bo Larsen"));

    auto const cookie = visitor.post(password + keepUrl, "account=bo&password=x", Redirects::stay);
    EXPECT_EQ(cookie.setCookie, "SID=bo; Domain=google.com; Path=/; Max-Age=31536000; Secure; HttpOnly; SameSite=Lax");
    EXPECT_EQ(cookie.url, "https://accounts.google.com/CheckCookie?continue=" + keepUrl);
    EXPECT_EQ(visitor.get(cookie.url).url, "https://keep.google.com/u/0/?a=1&b=2");
    EXPECT_THAT(visitor.get("https://mail.google.com/mail/u/0/").body,
        HasSubstr("<title>Inbox (12) - bo.larsen@example.org - Mail</title>"));
    EXPECT_EQ(visitor.get("https://accounts.google.com/ServiceLogin?continue=" + keepUrl).url,
        "https://keep.google.com/u/0/?a=1&b=2");

    visitor.get("https://accounts.google.com/Logout");
    EXPECT_THAT(visitor.get("https://mail.google.com/").url, StartsWith("https://accounts.google.com/ServiceLogin"));
}

TEST(StageServer, ContinueStaysOnTheApplicationsHosts)
{
    std::string const document = "https://docs.google.com/document/create?x=a@b#y";
    EXPECT_EQ(SignInService::checkedContinue(document), document);
    for (auto const* elsewhere : { "http://mail.google.com/x", "https://google.com.evil.example/",
             "https://evilgoogle.com/", "https://mail.google.com@evil.example/", "https://evil.example\\.google.com/",
             "https://evil.example/.google.com", "https://mail.google.com/\r\nSet-Cookie: a=b",
             "javascript:alert(1)//.google.com", "//mail.google.com/", "" })
        EXPECT_EQ(SignInService::checkedContinue(elsewhere), "https://mail.google.com/") << elsewhere;
}

TEST(StageServer, ValuesInPagesAreEscapedAndExpandedOnce)
{
    TemporaryFolder folder;
    write(folder / "foreign/index.html", "<b title=\"{{query}}\">{{value}}{{unknown}}</b>{{");
    Pages const pages(folder.path());
    auto const page = pages.page("foreign", "index.html", { { "value", "<i>'{{query}}'</i>" }, { "query", "\"&" } });
    EXPECT_EQ(page.body, "<b title=\"&quot;&amp;\">&lt;i&gt;&#39;{{query}}&#39;&lt;/i&gt;</b>{{");

    StageServer server;
    Visitor visitor(server.proxyUri());
    auto const unknown = visitor.get("http://news.example/%3Cscript%3E'\"");
    EXPECT_EQ(unknown.status, 404u);
    EXPECT_THAT(unknown.body, Not(HasSubstr("<script>")));
    EXPECT_THAT(unknown.body, Not(HasSubstr("'\"")));
}

TEST(StageServer, NoPathLeadsOutOfAServicesFolder)
{
    TemporaryFolder folder;
    write(folder / "secret.txt", "secret");
    write(folder / "foreign/.hidden", "secret");
    write(folder / "other/page.html", "secret");
    write(folder / "foreign/page.html", "page");
    write(folder / "shared/style.css", "style");
    write(folder / "shared/unknown.html", "unknown");
    Pages const pages(folder.path());
    auto const body
        = [&](std::string_view path) { return pages.read(pages.match(serviceOf("news.example"), path), {}).body; };
    EXPECT_EQ(body("/page"), "page");
    EXPECT_EQ(body("/page.html"), "page");
    EXPECT_EQ(body("/_stage/style.css"), "style");
    for (std::string const path : { "/../secret.txt", "/%2e%2e/secret.txt", "/..%2fsecret.txt", "/x/../../secret.txt",
             "/..\\secret.txt", "/.hidden", "/page.html%00.css", "/../other/page", "/_stage/%2e./secret.txt" })
        EXPECT_EQ(body(path), "unknown") << path;
    EXPECT_EQ(body("/" + (folder / "secret.txt").string()), "unknown");
}

TEST(StageServer, TheLogHoldsWhatWasAskedInMemoryAndInTheFile)
{
    TemporaryFolder folder;
    auto const logFile = folder / "requests.jsonl";
    StageServer server(StageServer::defaultServices(), { logFile, SignIn::byHand });
    std::vector<std::string> heard;
    server.onRequest = [&](Request const& request) { heard.push_back(request.host + request.path); };
    Visitor visitor(server.proxyUri());
    visitor.post(password + keepUrl, "account=ada", Redirects::stay);
    server.clearRequests();
    heard.clear();
    visitor.get("http://News.Example/story?a=%20b");
    visitor.post("https://mail.google.com/_stage/beacon", "{\"event\":\"hidden\"}\n\xff");

    EXPECT_THAT(heard, testing::ElementsAre("news.example/story", "mail.google.com/_stage/beacon"));
    auto const& story = server.requests().at(0);
    EXPECT_EQ(story.method + " " + story.path + "?" + story.query, "GET /story?a=%20b");
    EXPECT_EQ(story.account + story.cookies, "");
    auto const& beacon = server.requests().at(1);
    EXPECT_EQ(beacon.account, "ada");
    EXPECT_EQ(beacon.cookies, "SID=ada");
    EXPECT_EQ(beacon.userAgent, "Visitor/1.0");

    std::ifstream file(logFile);
    std::vector<nlohmann::json> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(nlohmann::json::parse(line));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1].value("host", ""), "news.example");
    EXPECT_THAT(lines[2].value("body", ""), StartsWith("{\"event\":\"hidden\"}"));
}

}
}
