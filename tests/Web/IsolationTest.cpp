#include "Fakes/FakePanels.h"
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
            found.workers = (await navigator.serviceWorker.getRegistrations()).length > 0;
            await navigator.serviceWorker.register('/_stage/worker.js');
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
    EXPECT_EQ(fillStores(), "cookie local indexed caches workers") << "the stores hold at all";

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
    // The engine writes cached responses seconds after the last page has gone. There is no sign when it is done, but
    // that it does not matter how long it goes on.
    EXPECT_EQ(std::filesystem::status(dataFolder(home)).type(), std::filesystem::file_type::regular);
    EXPECT_EQ(std::filesystem::status(cacheFolder(home)).type(), std::filesystem::file_type::regular);
    EXPECT_EQ(std::filesystem::file_size(cacheFolder(home)), 0);
    terminate();
    EXPECT_FALSE(std::filesystem::exists(dataFolder(home))) << list(dataFolder(home));
    EXPECT_FALSE(std::filesystem::exists(cacheFolder(home))) << list(cacheFolder(home));
    EXPECT_FALSE(holds(folder.path(), home.string())) << "nor its name";
    EXPECT_TRUE(std::filesystem::exists(dataFolder(work)));
}

TEST_F(IsolationTest, WhatWasCachedAllowedZoomedAndSavedStaysInItsProfile)
{
    test::FakePanels panelsOfTheTest;
    desktopPanels = &panelsOfTheTest;
    launch();
    auto const home = profiles().activeID();
    auto const work = profiles().create("Work", { GoogleApp::keep }).id;
    open(GoogleApp::keep);
    auto const page = [this]() -> gtk::WebView& { return view(GoogleApp::keep); };
    auto const answer = [&] { return evaluate(page(), "window.answer"); };
    auto const askForPlace = [&] {
        evaluate(page(),
            "void (window.answer = '', navigator.geolocation.getCurrentPosition(() => { answer = 'given' },"
            " (error) => { answer = 'code ' + error.code }))");
    };
    auto const fetchStyle = [&] {
        EXPECT_EQ(evaluate(page(), "fetch('/keep.css').then((r) => r.text()).then(() => 'read')"), "read");
        return requestCount("keep.google.com", "/keep.css");
    };
    auto const saveFile = [&] {
        auto const before = requestCount("keep.google.com", "/_stage/download/file");
        page().load({ .url = *Url::parse("https://keep.google.com/_stage/download/file") });
        waitUntil([&] { return !panelsOfTheTest.savePanels.empty(); }, "panel");
        panelsOfTheTest.save(std::nullopt);
        EXPECT_EQ(requestCount("keep.google.com", "/_stage/download/file"), before + 1);
        return stage.requests().back().account;
    };

    auto const asked = fetchStyle();
    EXPECT_EQ(fetchStyle(), asked) << "the cache holds at all";
    askForPlace();
    waitUntil([&] { return !panelsOfTheTest.alerts.empty(); }, "question");
    panelsOfTheTest.press(0);
    waitUntil([&] { return answer() == "code 1"; }, "answer");
    EXPECT_TRUE(controller().perform(platform::Command::zoomIn, 0));
    auto const zoomed = page().pageZoom();
    EXPECT_GT(zoomed, 1);
    EXPECT_EQ(saveFile(), "ada");

    profiles().setActive(work);
    waitForPage(GoogleApp::keep);
    askForPlace();
    waitUntil([&] { return !panelsOfTheTest.alerts.empty(); }, "question of the second profile");
    panelsOfTheTest.press(0);
    EXPECT_EQ(page().pageZoom(), 1);
    EXPECT_GT(fetchStyle(), asked) << "the second profile asks the server itself";
    EXPECT_EQ(saveFile(), "bo") << "with its own cookies";

    profiles().setActive(home);
    waitForPage(GoogleApp::keep);
    askForPlace();
    waitUntil([&] { return answer() == "code 1"; }, "the answer of before");
    EXPECT_TRUE(panelsOfTheTest.alerts.empty());
    EXPECT_EQ(page().pageZoom(), zoomed);
    terminate();
    ASSERT_NE(list(folder.path()).find(home.string() + ".json"), std::string::npos) << "the answer was kept";
    launch();
    std::optional<std::optional<std::string>> removal;
    controller().deleteProfile(home, [&](std::optional<std::string> error) { removal = std::move(error); });
    waitUntil([&] { return removal.has_value(); }, "removal");
    EXPECT_EQ(*removal, std::nullopt);
    terminate();
    EXPECT_EQ(list(folder.path()).find(home.string()), std::string::npos) << list(folder.path());
    EXPECT_FALSE(holds(folder.path(), home.string()));
}

TEST_F(IsolationTest, HttpPasswordsStayInTheirProfile)
{
    launch();
    auto const work = profiles().create("Work", { GoogleApp::keep }).id;
    auto const secret = *Url::parse("https://keep.google.com/_stage/auth-basic");
    // Asks for the page, as a user who knows the password; tells how often it was asked for.
    auto const visit = [&] {
        auto& page = view(GoogleApp::keep);
        int asked = 0;
        gtk::Signal<gboolean(WebKitAuthenticationRequest*)> const answer(
            page.engineView(), "authenticate", [&](WebKitAuthenticationRequest* request) -> gboolean {
                ++asked;
                EXPECT_FALSE(webkit_authentication_request_can_save_credentials(request))
                    << "nothing goes to the keyring, which all profiles share";
                auto* const credential
                    = webkit_credential_new("reader", "tarn", WEBKIT_CREDENTIAL_PERSISTENCE_FOR_SESSION);
                webkit_authentication_request_authenticate(request, credential);
                webkit_credential_free(credential);
                return TRUE;
            });
        page.load({ .url = secret });
        waitUntil([&] { return page.url() == secret && !webkit_web_view_is_loading(page.engineView()); }, "answer");
        EXPECT_EQ(evaluate(page, "document.body.textContent"), "Come in, reader.");
        return asked;
    };
    open(GoogleApp::keep);
    EXPECT_EQ(visit(), 1);
    EXPECT_EQ(visit(), 0) << "remembered in its own profile";
    profiles().setActive(work);
    open(GoogleApp::keep);
    EXPECT_EQ(visit(), 1) << "and in no other";
}

}
}
