#include "Bridge/NotificationBridge.h"

#include "Bridge/BridgeScripts.h"
#include "Bridge/NotificationText.h"
#include "Fakes/FakeDesktop.h"
#include "Fakes/FakeNotificationCenter.h"
#include "Fakes/FakeWebView.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace tarn {
namespace {

using platform::AuthorizationStatus;
using platform::NotificationPresentation;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

class Document final : public platform::ScriptDocument {
public:
    void call(std::string const& function, std::string const& argument) override
    {
        calls.push_back(function + " " + argument);
    }

    std::vector<std::string> calls;
};

class NotificationBridgeTest : public testing::Test {
protected:
    NotificationBridgeTest()
    {
        bridge->onShow = [this](platform::WebView& clicked) { brought.push_back(&clicked); };
        bridge->install(content);
    }

    void post(nlohmann::json const& body, std::string const& origin = "https://mail.google.com")
    {
        postText(body.dump(), origin);
    }
    void postText(std::string const& body, std::string const& origin = "https://mail.google.com")
    {
        content.messageHandlers[0].handler->didReceive({ *view, document, platform::FrameKind::main, origin, body });
    }
    void show(std::string const& id, nlohmann::json fields = nlohmann::json::object())
    {
        fields.update({ { "type", "show" }, { "id", id } });
        post(fields);
    }
    std::string ask()
    {
        std::string answer = "none";
        content.messageHandlers[1].handler->didReceive(
            { *view, document, platform::FrameKind::main, "https://mail.google.com", "{}" },
            platform::ScriptReply([&](platform::ScriptAnswer const& given) { answer = given.result.value_or("error"); },
                { .error = "dropped" }));
        center.answerQuestions();
        return answer;
    }

    test::FakeNotificationCenter center;
    test::FakeActivation activation;
    test::FakeWorkspace workspace;
    std::vector<std::string> log;
    platform::UserContentController content;
    std::unique_ptr<NotificationBridge> bridge { std::make_unique<NotificationBridge>(NotificationBridge::Environment {
        center, activation, workspace, &Uuid::random, [this](std::string const& line) { log.push_back(line); } }) };
    std::vector<platform::WebView*> brought;
    std::unique_ptr<test::FakeWebView> view { std::make_unique<test::FakeWebView>() };
    std::shared_ptr<Document> document { std::make_shared<Document>() };
};

TEST_F(NotificationBridgeTest, InstallsTheScriptAndItsHandlers)
{
    ASSERT_THAT(content.userScripts, SizeIs(2));
    EXPECT_EQ(content.userScripts[0].source, BridgeScripts::notificationRoads());
    EXPECT_EQ(content.userScripts[1].source, BridgeScripts::notifications("default"));
    for (auto const& script : content.userScripts) {
        EXPECT_EQ(script.injectionTime, platform::InjectionTime::documentStart);
        EXPECT_EQ(script.frames, platform::InjectedFrames::allFrames);
    }
    EXPECT_EQ(content.messageHandlers[0].name, "tarnNotify");
    EXPECT_EQ(content.messageHandlers[0].reply, platform::MessageReply::none);
    EXPECT_EQ(content.messageHandlers[1].name, "tarnNotifyPermission");
    EXPECT_EQ(content.messageHandlers[1].reply, platform::MessageReply::expected);
}

TEST_F(NotificationBridgeTest, ShowsWhatAPageSays)
{
    show("1", { { "title", "Mira" }, { "body", "Lunch?\nAt noon" }, { "tag", "m1" }, { "silent", false } });
    show("2", { { "title", 5 }, { "silent", true }, { "tag", "" } });
    ASSERT_THAT(center.shown, SizeIs(2));
    auto const& first = center.shown[0];
    EXPECT_THAT(first.identifier, EndsWith("-1"));
    EXPECT_EQ(first.title, "Mira");
    EXPECT_EQ(first.body, "Lunch?\nAt noon");
    EXPECT_EQ(first.sound, platform::NotificationSound::standard);
    EXPECT_EQ(first.threadIdentifier, "m1");
    EXPECT_THAT(first.userInfo, IsEmpty());
    EXPECT_EQ(center.shown[1].title, "");
    EXPECT_EQ(center.shown[1].body, "");
    EXPECT_EQ(center.shown[1].sound, platform::NotificationSound::none);
    EXPECT_EQ(center.shown[1].threadIdentifier, std::nullopt);
}

TEST_F(NotificationBridgeTest, DropsWhatIsNoMessage)
{
    for (auto const* const body : { "", "{", "null", "[]", "\"show\"", R"({"type":"show"})", R"({"id":"1"})",
             R"({"type":"show","id":1})", R"({"type":"open","id":"1"})", R"({"type":["show"],"id":"1"})" })
        postText(body);
    show(std::string(100'000, '1'));
    postText(std::string(1 << 20, '['));
    postText(R"({"type":"show","id":"1","title":)" + std::string(1 << 16, '[') + std::string(1 << 16, ']') + "}");
    EXPECT_THAT(center.titles(), ElementsAre("")) << "only the last, whose title is no text";
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(NotificationBridgeTest, TextIsBounded)
{
    struct Case {
        std::string text;
        std::string title;
    };
    auto const longest = NotificationText::longestTitle;
    auto const umlauts = [](std::size_t count) {
        std::string text;
        for (; count > 0; --count)
            text += "\u00FC";
        return text;
    };
    Case const cases[] { { umlauts(longest), umlauts(longest) }, { umlauts(longest + 1), umlauts(longest - 1) + "…" },
        { std::string(1 << 20, 'x'), std::string(longest - 1, 'x') + "…" } };
    for (auto const& [text, title] : cases) {
        show("1", { { "title", text }, { "body", std::string(4000, 'y') } });
        EXPECT_EQ(center.shown.back().title, title);
        EXPECT_EQ(center.shown.back().body.size(), NotificationText::longestBody - 1 + 3);
    }
}

TEST_F(NotificationBridgeTest, AForeignPageIsNamed)
{
    struct Case {
        char const* origin;
        std::string body;
        std::string shown;
    };
    Case const cases[] {
        { "https://mail.google.com", "plain", "plain" },
        { "https://docs.google.com", "two\nlines", "two\nlines" },
        { "https://news.example", "plain", "plain\nhttps://news.example" },
        { "https://news.example", "", "https://news.example" },
        { "https://news.example:8443", "a\nb\r\n\tc\u2028d\u0085e", "a b   c d e\nhttps://news.example:8443" },
        { "http://mail.google.com", "not secure", "not secure\nhttp://mail.google.com" },
        { "https://mail.google.com.evil.example", "", "https://mail.google.com.evil.example" },
        { "null", "sandboxed", "sandboxed\nunknown origin" },
    };
    for (auto const& [origin, body, shown] : cases) {
        post({ { "type", "show" }, { "id", "1" }, { "body", body } }, origin);
        EXPECT_EQ(center.shown.back().body, shown) << origin;
    }
    post({ { "type", "show" }, { "id", "1" }, { "body", std::string(10'000, '\n') } }, "https://news.example");
    EXPECT_THAT(center.shown.back().body,
        AllOf(EndsWith("…\nhttps://news.example"), SizeIs(testing::Lt(NotificationText::longestForeignBody + 30))));
}

TEST_F(NotificationBridgeTest, ATagReplacesAcrossPages)
{
    show("1", { { "title", "first" }, { "tag", "m1" } });
    auto const first = center.shown[0];
    auto const other = std::exchange(document, std::make_shared<Document>());
    show("1", { { "title", "no tag" } });
    show("2", { { "title", "second" }, { "tag", "m1" } });
    EXPECT_THAT(center.titles(), ElementsAre("no tag", "second"));
    EXPECT_THAT(center.shown[0].identifier, testing::Ne(first.identifier)) << "pages count for themselves";
    center.click(first);
    EXPECT_THAT(other->calls, ElementsAre("__tarnNotificationClicked 1")) << "it may still be in a list";
    show("2", { { "title", "again" }, { "tag", "m1" } });
    EXPECT_THAT(center.titles(), ElementsAre("no tag", "again"));
}

TEST_F(NotificationBridgeTest, ClosingTakesAwayAndForgets)
{
    show("1", { { "title", "kept" } });
    show("2", { { "title", "closed" } });
    auto const closed = center.shown[1];
    post({ { "type", "close" }, { "id", "2" } });
    post({ { "type", "close" }, { "id", "none" } });
    EXPECT_THAT(center.titles(), ElementsAre("kept"));
    center.click(closed);
    EXPECT_THAT(brought, IsEmpty());
    EXPECT_THAT(document->calls, IsEmpty());

    // One that has not been handed over yet.
    for (int count = 0; count < 20; ++count)
        show("w" + std::to_string(count), { { "title", "w" } });
    post({ { "type", "close" }, { "id", "w19" } });
    center.completeAdds();
    EXPECT_THAT(center.shown, SizeIs(1 + 19));
}

TEST_F(NotificationBridgeTest, AClickComesBackToItsPage)
{
    show("1");
    auto const shown = center.shown[0];
    for (int clicks = 1; clicks <= 2; ++clicks) {
        center.click(shown);
        EXPECT_EQ(activation.activations, clicks);
        EXPECT_THAT(brought, SizeIs(clicks));
        EXPECT_EQ(brought.back(), view.get());
        EXPECT_THAT(document->calls, SizeIs(clicks));
    }
    EXPECT_EQ(document->calls[0], "__tarnNotificationClicked 1");

    view.reset();
    center.click(shown);
    center.click({ .identifier = "of an earlier run", .title = {}, .body = {} });
    EXPECT_EQ(activation.activations, 4) << "it comes to the front, and that is all";
    EXPECT_THAT(brought, SizeIs(2));
    EXPECT_THAT(document->calls, SizeIs(2));
}

TEST_F(NotificationBridgeTest, NoBannerWhileTheUserIsHere)
{
    show("1");
    activation.active = true;
    show("2");
    EXPECT_THAT(
        center.presentations, ElementsAre(NotificationPresentation::banner, NotificationPresentation::listOnly));
}

TEST_F(NotificationBridgeTest, PagesHearTheTruthAboutPermission)
{
    struct Case {
        AuthorizationStatus status;
        AuthorizationStatus decision;
        char const* asked;
        char const* pushed;
    };
    using enum AuthorizationStatus;
    Case const cases[] {
        { authorized, denied, "granted", "granted" },
        { provisional, denied, "granted", "granted" },
        { denied, authorized, "denied", "denied" },
        { notDetermined, denied, "denied", "default" },
        { notDetermined, authorized, "granted", "default" },
    };
    for (auto const& [status, decision, asked, pushed] : cases) {
        center.status = status;
        center.decision = decision;
        view->events.clear();
        bridge->pushPermission(*view);
        center.answerQuestions();
        EXPECT_THAT(view->events,
            ElementsAre("script window.__tarnSetNotificationPermission && window.__tarnSetNotificationPermission(\""
                + std::string(pushed) + "\")"));
        EXPECT_EQ(ask(), asked);
    }
    bridge->pushPermission(*view);
    view.reset();
    center.answerQuestions();
}

TEST_F(NotificationBridgeTest, AsksTheUserOnceAtTheFirstLaunch)
{
    for (auto const status : { AuthorizationStatus::authorized, AuthorizationStatus::denied }) {
        center.status = status;
        bridge->askOnFirstLaunch();
        center.answerQuestions();
    }
    EXPECT_EQ(center.requests, 0);
    center.status = AuthorizationStatus::notDetermined;
    bridge->askOnFirstLaunch();
    center.answerQuestions();
    EXPECT_EQ(center.requests, 1);
}

TEST_F(NotificationBridgeTest, WithoutABridgePagesAreDenied)
{
    bridge.reset();
    show("1");
    EXPECT_THAT(center.shown, IsEmpty());
    EXPECT_EQ(ask(), "denied");
    EXPECT_EQ(center.delegate, nullptr);

    // It ends while the desktop is still thinking.
    bridge = std::make_unique<NotificationBridge>(
        NotificationBridge::Environment { center, activation, workspace, &Uuid::random, [](std::string const&) {} });
    content = {};
    bridge->install(content);
    show("1");
    bridge->askOnFirstLaunch();
    bridge->pushPermission(*view);
    auto const handler = content.messageHandlers[1].handler;
    std::string answer;
    handler->didReceive({ *view, document, platform::FrameKind::main, "https://mail.google.com", "{}" },
        platform::ScriptReply([&](platform::ScriptAnswer const& given) { answer = given.result.value_or(""); }, {}));
    bridge.reset();
    center.answerQuestions();
    center.completeAdds();
    EXPECT_EQ(answer, "denied");
    EXPECT_THAT(view->events, IsEmpty());
}

TEST_F(NotificationBridgeTest, ABurstComesInOrderAndAFloodLosesItsOldest)
{
    std::vector<std::string> expected;
    auto const burst = [&](int count) {
        for (int number = 0; number < count; ++number)
            show(std::to_string(number), { { "title", std::to_string(number) } });
    };
    burst(1000);
    for (int number = 0; number < 1000; ++number)
        expected.push_back(std::to_string(number));
    EXPECT_THAT(center.shown, SizeIs(NotificationQueue::atOnce));
    center.completeAdds();
    EXPECT_EQ(center.titles(), expected) << "none lost";
    EXPECT_THAT(log, IsEmpty());

    center.shown.clear();
    document = std::make_shared<Document>();
    burst(5000);
    center.completeAdds();
    EXPECT_THAT(center.shown, SizeIs(NotificationQueue::atOnce + NotificationQueue::mostWaiting));
    EXPECT_EQ(center.shown.back().title, "4999");
    EXPECT_THAT(log, ElementsAre("[Notifications] too many at once: the oldest are dropped"));
    center.click(center.shown.back());
    center.click(center.shown.front());
    EXPECT_THAT(document->calls, ElementsAre("__tarnNotificationClicked 4999"))
        << "of the oldest, forgotten ones the page hears nothing";
}

TEST_F(NotificationBridgeTest, AFailureIsLoggedOnceAndAgainAfterASuccess)
{
    auto const attempt = [&](std::optional<std::string> const& error) {
        show("1");
        center.completeAdds(error);
    };
    attempt("nobody there");
    attempt("nobody there");
    center.status = AuthorizationStatus::denied;
    center.reason = "nobody there";
    EXPECT_EQ(ask(), "denied");
    attempt("too many");
    attempt(std::nullopt);
    attempt("too many");
    EXPECT_THAT(log,
        ElementsAre("[Notifications] failed: nobody there", "[Notifications] failed: too many",
            "[Notifications] failed: too many"));
}

TEST_F(NotificationBridgeTest, ADownloadNoticeRevealsItsFile)
{
    bridge->downloadFinished("/home/ada/Downloads/letter & more.pdf");
    ASSERT_THAT(center.shown, SizeIs(1));
    auto const& notice = center.shown[0];
    EXPECT_THAT(notice.identifier, StartsWith("download-"));
    EXPECT_TRUE(Uuid::parse(notice.identifier.substr(9)).has_value());
    EXPECT_EQ(notice.title, "Download complete");
    EXPECT_EQ(notice.body, "letter & more.pdf");
    EXPECT_EQ(notice.sound, platform::NotificationSound::none);
    center.click(notice);
    EXPECT_THAT(workspace.revealed, ElementsAre("/home/ada/Downloads/letter & more.pdf"));
    EXPECT_EQ(activation.activations, 0);
}

}
}
