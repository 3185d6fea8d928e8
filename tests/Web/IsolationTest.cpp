#include "Web/WebTest.h"

#include <gmock/gmock.h>

#include <set>

namespace tarn {
namespace {

class IsolationTest : public test::WebTest {
protected:
    static std::string list(std::filesystem::path const& folder)
    {
        std::string text;
        for (auto const& entry : std::filesystem::recursive_directory_iterator(folder))
            text += entry.path().string() + "\n";
        return text;
    }

    // Fills every store of a page's host with a tag, and tells which held it before.
    std::string fillStores()
    {
        return evaluate(view(GoogleApp::keep), R"js((async () => {
            const found = {};
            found.cookie = document.cookie.includes('tag=');
            document.cookie = 'tag=TAG; max-age=100000; path=/';
            found.local = localStorage.getItem('tag') !== null;
            localStorage.setItem('tag', 'TAG');
            const open = () => new Promise((done, fail) => {
                const request = indexedDB.open('isolation', 1);
                request.onupgradeneeded = () => request.result.createObjectStore('tags');
                request.onsuccess = () => done(request.result);
                request.onerror = () => fail(request.error);
            });
            const database = await open();
            const ask = (mode, use) => new Promise((done) => {
                const request = use(database.transaction('tags', mode).objectStore('tags'));
                request.onsuccess = () => done(request.result);
            });
            found.indexed = await ask('readonly', (s) => s.get('tag')) !== undefined;
            await ask('readwrite', (s) => s.put('TAG', 'tag'));
            found.caches = (await caches.keys()).length > 0;
            const cache = await caches.open('tag');
            await cache.put('/tag', new Response('TAG'));
            return Object.keys(found).filter((key) => found[key]).join(' ');
        })())js");
    }
};

TEST_F(IsolationTest, TwoProfilesNeverMeet)
{
    launch();
    auto const home = profiles().activeID();
    auto const work = profiles().create("Work", { GoogleApp::keep }).id;
    open(GoogleApp::keep);
    EXPECT_EQ(fillStores(), "");
    EXPECT_EQ(fillStores(), "cookie local indexed caches") << "the stores hold at all";

    profiles().setActive(work);
    waitForPage(GoogleApp::keep);
    EXPECT_EQ(fillStores(), "") << "the second profile starts empty";

    std::set<std::string> accounts;
    for (auto const& request : stage.requests()) {
        SCOPED_TRACE(request.host + request.path + ": " + request.cookies);
        if (request.host == "keep.google.com" && !request.account.empty())
            accounts.insert(request.account);
        auto const carries = [&](char const* text) { return request.cookies.find(text) != std::string::npos; };
        EXPECT_FALSE(carries("ada") && carries("bo"));
    }
    EXPECT_EQ(accounts, (std::set<std::string> { "ada", "bo" }));

    terminate();
    EXPECT_NE(test::WebTest::read(dataFolder(home) / "cookies.sqlite").find("SIDada"), std::string::npos);
    EXPECT_EQ(test::WebTest::read(dataFolder(home) / "cookies.sqlite").find("SIDbo"), std::string::npos);
    EXPECT_NE(test::WebTest::read(dataFolder(work) / "cookies.sqlite").find("SIDbo"), std::string::npos);
    EXPECT_EQ(test::WebTest::read(dataFolder(work) / "cookies.sqlite").find("SIDada"), std::string::npos);
}

TEST_F(IsolationTest, ADeletedProfileLeavesNothing)
{
    launch();
    auto const home = profiles().activeID();
    auto const work = profiles().create("Work", { GoogleApp::keep }).id;
    open(GoogleApp::keep);
    fillStores();
    ASSERT_TRUE(std::filesystem::exists(dataFolder(home)));
    ASSERT_TRUE(std::filesystem::exists(cacheFolder(home)));
    auto const permissions = std::filesystem::status(dataFolder(home)).permissions();
    EXPECT_EQ(permissions, std::filesystem::perms::owner_all) << "nobody else reads it";

    // While it is the active one, with its page open.
    std::optional<std::optional<std::string>> answer;
    controller().deleteProfile(home, [&](std::optional<std::string> error) { answer = std::move(error); });
    waitUntil([&] { return answer.has_value(); }, "removal");
    EXPECT_EQ(*answer, std::nullopt);
    waitForPage(GoogleApp::keep);
    terminate();
    EXPECT_FALSE(std::filesystem::exists(dataFolder(home))) << list(dataFolder(home));
    EXPECT_FALSE(std::filesystem::exists(cacheFolder(home))) << list(cacheFolder(home));
    EXPECT_FALSE(holds(folder.path(), home.string())) << "nor its name";
    EXPECT_TRUE(std::filesystem::exists(dataFolder(work)));
}

TEST_F(IsolationTest, HttpPasswordsStayInTheirProfile)
{
    launch();
    auto const home = profiles().activeID();
    auto const work = profiles().create("Work", { GoogleApp::keep }).id;
    for (auto const& id : { home, work }) {
        profiles().setActive(id);
        open(GoogleApp::keep);
        auto* const session = webkit_web_view_get_network_session(view(GoogleApp::keep).engineView());
        EXPECT_FALSE(webkit_network_session_get_persistent_credential_storage_enabled(session));
    }
    auto* const session = webkit_web_view_get_network_session(view(GoogleApp::keep).engineView());
    profiles().setActive(home);
    EXPECT_NE(session, webkit_web_view_get_network_session(view(GoogleApp::keep).engineView()));
}

}
}
