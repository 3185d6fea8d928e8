#include "StageServer.h"

#include "Visitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <fstream>

namespace tarn::stage {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Redirects = Visitor::Redirects;

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        auto name = (fs::temp_directory_path() / "tarn-stage-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder() { fs::remove_all(m_path); }
    fs::path const& path() const { return m_path; }
    fs::path write(fs::path const& name, std::string_view content) const
    {
        fs::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name) << content;
        return m_path / name;
    }

private:
    fs::path m_path;
};

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

TEST(StageServer, SingleSignOnLeadsThroughTheProvider)
{
    StageServer server;
    Visitor visitor(server.proxyUri());
    auto const provider = visitor.get("https://accounts.google.com/signin/sso?continue=" + keepUrl);
    EXPECT_THAT(provider.url, StartsWith("https://login.microsoftonline.com/"));
    EXPECT_THAT(visitor.post(provider.url, "account=chen").body,
        HasSubstr("action=\"https://accounts.google.com/signin/acs?continue=" + keepUrl));
    EXPECT_EQ(visitor.post("https://accounts.google.com/signin/acs?continue=" + keepUrl, "account=chen").url,
        "https://keep.google.com/u/0/?a=1&b=2");
}

TEST(StageServer, AutomaticSignInGivesEachNewJarTheNextAccountAndKeepsIt)
{
    StageServer server(StageServer::defaultServices(), { {}, SignIn::automatic });
    auto const account = [](Visitor& visitor) {
        auto const body = visitor.post("https://accounts.google.com/signin/automatic", "").body;
        return nlohmann::json::parse(body).value("id", "");
    };
    // This one comes with a sign-in of an earlier run.
    Visitor earlier(server.proxyUri());
    earlier.post(password + keepUrl, "account=bo");

    std::vector<std::string> given;
    for (int jar = 0; jar < 5; ++jar) {
        Visitor visitor(server.proxyUri());
        given.push_back(account(visitor));
        EXPECT_EQ(account(visitor), given.back());
    }
    EXPECT_THAT(given, testing::ElementsAre("ada", "chen", "ada", "bo", "chen"));
    EXPECT_EQ(account(earlier), "bo");
}

TEST(StageServer, ContinueStaysOnTheApplicationsHosts)
{
    std::string const mail = "https://mail.google.com/";
    struct {
        std::string url;
        std::string expected;
    } const cases[] {
        { "https://docs.google.com/document/create?x=1#y", "https://docs.google.com/document/create?x=1#y" },
        { "http://mail.google.com/x", mail },
        { "https://google.com.evil.example/", mail },
        { "https://evilgoogle.com/", mail },
        { "https://mail.google.com@evil.example/", mail },
        { "https://evil.example\\.google.com/", mail },
        { "https://evil.example/.google.com", mail },
        { "https://mail.google.com/\r\nSet-Cookie: a=b", mail },
        { "javascript:alert(1)//.google.com", mail },
        { "//mail.google.com/", mail },
        { "", mail },
    };
    for (auto const& [url, expected] : cases)
        EXPECT_EQ(SignInService::checkedContinue(url), expected) << url;
    EXPECT_EQ(SignInService::checkedContinue({}), mail);
}

TEST(StageServer, WrappedLinksLeadOnToWebAddressesOnly)
{
    StageServer server;
    Visitor visitor(server.proxyUri());
    struct {
        std::string target;
        std::string expected;
    } const cases[] {
        { "https%3A%2F%2Fnews.example%2Fstory", "https://news.example/story" },
        { "javascript%3Aalert(1)", "https://www.google.com/url?q=javascript%3Aalert(1)" },
        { "https%3A%2F%2Fa%0D%0AX%3A1", "https://www.google.com/url?q=https%3A%2F%2Fa%0D%0AX%3A1" },
    };
    for (auto const& [target, expected] : cases)
        EXPECT_EQ(visitor.get("https://www.google.com/url?q=" + target).url, expected);
}

TEST(StageServer, ValuesInPagesAreEscapedAndExpandedOnce)
{
    TemporaryFolder folder;
    folder.write("foreign/index.html", "<b title=\"{{query}}\">{{value}}{{unknown}}</b>{{");
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
    folder.write("secret.txt", "secret");
    folder.write("foreign/.hidden", "secret");
    folder.write("other/page.html", "secret");
    folder.write("foreign/page.html", "page");
    folder.write("shared/style.css", "style");
    folder.write("shared/unknown.html", "unknown");
    Pages const pages(folder.path());
    auto const body
        = [&](std::string_view path) { return pages.read(pages.match(serviceOf("news.example"), path), {}).body; };
    EXPECT_EQ(body("/page"), "page");
    EXPECT_EQ(body("/page.html"), "page");
    EXPECT_EQ(body("/_stage/style.css"), "style");
    for (auto const* path : { "/../secret.txt", "/%2e%2e/secret.txt", "/..%2fsecret.txt", "/x/../../secret.txt",
             "/_stage/../secret.txt", "/..\\secret.txt", "/%5c..%5csecret.txt", "/.hidden", "/page.html%00.css", "/%zz",
             "", "/../other/page", "//../secret.txt", "/_stage/%2e./secret.txt" })
        EXPECT_EQ(body(path), "unknown") << path;
    EXPECT_EQ(body((folder.path() / "secret.txt").string()), "unknown");
    EXPECT_EQ(body("/" + (folder.path() / "secret.txt").string()), "unknown");
}

TEST(StageServer, TheLogHoldsWhatWasAskedInMemoryAndInTheFile)
{
    TemporaryFolder folder;
    auto const logFile = folder.path() / "requests.jsonl";
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

TEST(StageServer, UnreadCountsAreKeptForEachAccount)
{
    StageServer server;
    Visitor visitor(server.proxyUri());
    visitor.post(password + keepUrl, "account=ada", Redirects::stay);
    auto const unread = [&] {
        return nlohmann::json::parse(visitor.get("https://mail.google.com/_stage/state").body).value("unread", 99u);
    };
    EXPECT_EQ(unread(), 3u);
    for (auto const* conversation : { "c0", "c0", "c3", "c-1", "c99999999999", "x", "" })
        visitor.post("https://mail.google.com/_stage/state/read?id=" + std::string(conversation), "");
    EXPECT_EQ(unread(), 2u);
    visitor.post("https://mail.google.com/_stage/state/deliver?from=Mira&subject=%22Hi%22", "");
    EXPECT_EQ(unread(), 3u);
    server.mailboxes().markRead("ada", "n1");
    EXPECT_EQ(unread(), 2u);
    visitor.post("https://mail.google.com/_stage/state/unread?account=ada&count=1234", "");
    EXPECT_EQ(unread(), 1234u);
    EXPECT_EQ(server.mailboxes().unread("bo"), 12u);
    EXPECT_EQ(visitor.get("https://mail.google.com/_stage/state?account=nobody").status, 404u);
}

TEST(StageServer, DownloadsComeWholeWithoutLengthOrBroken)
{
    StageServer server;
    Visitor visitor(server.proxyUri());
    auto const address = [](std::string const& kind) {
        return "https://drive.google.com/_stage/download/a%20b.bin?size=100000&pause=1&kind=" + kind;
    };
    for (auto const* kind : { "sized", "unsized", "inline" })
        EXPECT_EQ(visitor.get(address(kind)).body.size(), 100000u) << kind;
    EXPECT_THROW(visitor.get(address("broken")), std::runtime_error);
}

TEST(StageServer, EndsWithAnswersStillOpen)
{
    for (auto const* path :
        { "hang", "slow?seconds=600", "state/events?account=ada", "download/a?kind=slow&pause=1000" }) {
        auto server = std::make_unique<StageServer>();
        Visitor visitor(server->proxyUri());
        server->onRequest = [&](Request const&) {
            auto const end = [](gpointer place) -> gboolean {
                static_cast<std::unique_ptr<StageServer>*>(place)->reset();
                return G_SOURCE_REMOVE;
            };
            g_idle_add_full(G_PRIORITY_LOW, end, &server, nullptr);
        };
        try {
            visitor.get("https://mail.google.com/_stage/" + std::string(path));
        } catch (std::runtime_error const&) {
            // Most of them are cut off in a way that a client calls an error.
        }
        EXPECT_FALSE(server) << path;
    }
}

}
}
