#include "Bridge/ScriptMessageProxy.h"
#include "Web/ScriptPageTest.h"

#include <gmock/gmock.h>

#include <deque>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ScriptMessagesTest : public test::ScriptPageTest {
protected:
    struct Received {
        platform::WebView* view;
        std::shared_ptr<platform::ScriptDocument> document;
        platform::FrameKind frame;
        std::string origin;
        std::string body;
    };

    ScriptMessagesTest()
    {
        handle("tell", platform::MessageReply::none);
        handle("ask", platform::MessageReply::expected);
    }
    ~ScriptMessagesTest() override { replies.clear(); }

    void handle(std::string name, platform::MessageReply reply)
    {
        auto const record = [this](platform::ScriptMessage const& message) {
            received.push_back({ &message.webView, message.document, message.frame, message.origin, message.body });
        };
        content.messageHandlers.push_back({ std::move(name), reply,
            std::make_shared<ScriptMessageProxy>(
                record, [this, record](platform::ScriptMessage const& message, platform::ScriptReply answer) {
                    record(message);
                    replies.push_back(std::move(answer));
                }) });
    }

    // The bodies of what arrives on the action, with all that the page posted before.
    std::vector<std::string> bodiesOf(std::string const& action)
    {
        received.clear();
        run("void ((post) => {" + action + "})((value) => webkit.messageHandlers.tell.postMessage(value))");
        run("void webkit.messageHandlers.tell.postMessage('end')");
        waitUntil([&] { return !received.empty() && received.back().body == "\"end\""; }, action);
        std::vector<std::string> bodies;
        for (auto const& message : received)
            bodies.push_back(message.body);
        if (!bodies.empty())
            bodies.pop_back();
        return bodies;
    }

    std::vector<Received> received;
    std::deque<platform::ScriptReply> replies;
};

TEST_F(ScriptMessagesTest, PagesSeeHandlersAndNothingElse)
{
    show("<script>window.names = Object.getOwnPropertyNames(window).filter(k => "
         "/tarn|^webkit$/i.test(k)).join()</script>");
    EXPECT_EQ(run("names"), "webkit");
    EXPECT_EQ(run("Object.keys(webkit.messageHandlers).sort().join()"), "ask,tell");
    EXPECT_EQ(run("webkit.messageHandlers.tell.postMessage({}) instanceof Promise"), "true");
    EXPECT_EQ(run("webkit.messageHandlers.tell.postMessage({})"), "undefined");
    EXPECT_EQ(run("typeof tarnRelay"), "undefined");
    EXPECT_EQ(run("fetch('tarn-channel://post/', { method: 'POST', body: 'x' }).then(() => 'in', () => 'out')"), "out");
}

TEST_F(ScriptMessagesTest, BodiesArriveWhole)
{
    show("");
    EXPECT_THAT(bodiesOf("post({ b: 1, a: [true, null, 'x'] })"), ElementsAre(R"({"b":1,"a":[true,null,"x"]})"));
    EXPECT_THAT(bodiesOf("post(); post(0); post('')"), ElementsAre("null", "0", "\"\""));
    EXPECT_THAT(
        bodiesOf("post('a\\ud800z\\u2028\\0</script>')"), ElementsAre("\"a\\ufffdz\xE2\x80\xA8\\u0000</script>\""))
        << "a lone surrogate is no text";
    EXPECT_THAT(bodiesOf("post('x'.repeat(1 << 20))"), ElementsAre(testing::SizeIs((1 << 20) + 2)));

    auto const many = bodiesOf("for (let i = 0; i < 5000; ++i) post(i)");
    ASSERT_EQ(many.size(), 5000);
    for (std::size_t i = 0; i < many.size(); ++i)
        ASSERT_EQ(many[i], std::to_string(i)) << "in order";
}

TEST_F(ScriptMessagesTest, HostilePagesHurtOnlyThemselves)
{
    show("");
    auto const attempt = [&](std::string const& code) {
        return run("(() => { try { " + code + "; return 'fine' } catch (e) { return e.name } })()");
    };
    std::string const tell = "webkit.messageHandlers.tell.postMessage";
    EXPECT_EQ(attempt("const a = {}; a.a = a; " + tell + "(a)"), "TypeError");
    EXPECT_EQ(attempt(tell + "(10n)"), "TypeError");
    EXPECT_EQ(attempt(tell + "(() => 1)"), "DataCloneError");
    EXPECT_EQ(attempt(tell + "({ toJSON() { throw new RangeError() } })"), "RangeError");

    // Forged on the road itself: nothing breaks, and the next message comes.
    EXPECT_THAT(
        bodiesOf("for (const detail of ['', '{', 'tell', 'tell\\n', 7, {}, null, 'none\\n\\n1', 'tell x\\n\\n1'])"
                 "window.dispatchEvent(new CustomEvent('tarn-post', { detail, cancelable: true }))"),
        IsEmpty());
    EXPECT_THAT(
        bodiesOf("const forge = (body) => dispatchEvent(new CustomEvent('tarn-post', { detail: 'tell\\n\\n' + body }));"
                 "forge('not JSON'); forge('['.repeat(1 << 20));"
                 "forge(String.raw`\\uD83D\\uDE00\\\\ud800\\udc00\\ud800\\ud83d\\ude00`)"),
        ElementsAre("not JSON", testing::SizeIs(1 << 20), R"(\uD83D\uDE00\\ud800\ufffd\ufffd\ud83d\ude00)"));
    EXPECT_THAT(log, IsEmpty());
    EXPECT_THAT(bodiesOf("for (let i = 0; i < 3; ++i) post('x'.repeat(9 << 20))"), IsEmpty());
    EXPECT_THAT(log, ElementsAre(HasSubstr("refused a message")));

    // What the page breaks of its own world.
    EXPECT_THAT(bodiesOf("JSON.stringify = JSON.parse = Reflect.apply = () => 'broken'; window.CustomEvent = null;"
                         "EventTarget.prototype.dispatchEvent = EventTarget.prototype.addEventListener = null;"
                         "window.dispatchEvent = null; Number.prototype.toString = null; window.Promise = null;"
                         "Math.random = () => { throw 1 };"
                         "for (const o of [Object, Array, String, Event, EventTarget, Promise ?? Object, Function])"
                         "{ Object.freeze(o.prototype); Object.freeze(o) }"
                         "post({ still: 'here' })"),
        ElementsAre(R"({"still":"here"})"));
    run("void (window.answer = webkit.messageHandlers.ask.postMessage('?'))");
    waitUntil([&] { return replies.size() == 1; }, "question");
    std::move(replies.front())({ .result = "!" });
    EXPECT_EQ(run("answer"), "!");
}

TEST_F(ScriptMessagesTest, EveryQuestionIsAnsweredOnce)
{
    show("");
    run("void (window.answers = [1, 2, 3, 4].map(n => webkit.messageHandlers.ask.postMessage(n)"
        ".then(r => n + ' ' + r, e => n + ' ' + e.message)))");
    waitUntil([&] { return replies.size() == 4; }, "questions");
    std::move(replies[1])({ .result = "late \xE2\x80\xA8\xF0\x9F\x98\x80" });
    std::move(replies[1])({ .result = "twice" });
    std::move(replies[0])({ .error = "no" });
    std::move(replies[2])({});
    replies.erase(replies.begin() + 3);
    EXPECT_EQ(
        run("Promise.all(answers).then(a => a.join())"), "1 no,2 late \xE2\x80\xA8\xF0\x9F\x98\x80,3 null,4 no answer");

    // More open questions than are carried at once, and a page that goes away from them.
    replies.clear();
    run("void (window.answers = Array.from({ length: 100 }, (_, n) => webkit.messageHandlers.ask.postMessage(n)))");
    for (int count = 0; count < 100; ++count) {
        waitUntil([&] { return !replies.empty(); }, "another question");
        std::move(replies.front())({ .result = std::to_string(count) });
        replies.pop_front();
    }
    EXPECT_EQ(run("Promise.all(answers).then(a => a.every((r, n) => r === String(n)))"), "true");
    run("void webkit.messageHandlers.ask.postMessage('left behind')");
    waitUntil([&] { return replies.size() == 1; }, "last question");
    show("another page");
    replies.clear();
    EXPECT_THAT(bodiesOf("post('alive')"), ElementsAre("\"alive\""));
}

TEST_F(ScriptMessagesTest, AProxyWithoutAHandlerSaysSo)
{
    ScriptMessageProxy const nobody { {}, {} };
    content.messageHandlers.push_back(
        { "deaf", platform::MessageReply::none, std::make_shared<ScriptMessageProxy>(nobody) });
    content.messageHandlers.push_back(
        { "mute", platform::MessageReply::expected, std::make_shared<ScriptMessageProxy>(nobody) });
    show("");
    EXPECT_EQ(run("webkit.messageHandlers.deaf.postMessage(1)"), "undefined");
    EXPECT_EQ(run("webkit.messageHandlers.mute.postMessage(1).catch(e => e.message)"), "no handler");
}

TEST_F(ScriptMessagesTest, TheSenderIsKnownAndCanBeCalledBack)
{
    std::string const script = "<script>window.heard = []; window.hear = (t) => { heard.push(t); };"
                               "webkit.messageHandlers.tell.postMessage(1)</script>";
    std::string const framed
        = "<script>window.heard = []; addEventListener('message', e => heard.push(e.data))</script>";
    std::string const quoted = "\""
        + std::string("<script>window.hear = (t) => parent.postMessage(t, '*');"
                      "webkit.messageHandlers.tell.postMessage(1)</script>")
        + "\"";
    struct Case {
        std::string html;
        char const* origin;
        platform::FrameKind frame;
    };
    Case const cases[] {
        { script, "https://mail.google.com", platform::FrameKind::main },
        { framed + "<iframe srcdoc=" + quoted + "></iframe>", "https://mail.google.com", platform::FrameKind::sub },
        { framed + "<iframe sandbox=allow-scripts srcdoc=" + quoted + "></iframe>", "null", platform::FrameKind::sub },
        { framed
                + "<meta http-equiv=Content-Security-Policy content=\"default-src 'none'; script-src 'unsafe-inline'; "
                  "frame-src *\"><iframe srcdoc="
                + quoted + "></iframe>",
            "https://mail.google.com", platform::FrameKind::sub },
        { framed + "<iframe src='https://contacts.google.com/_stage/posting.html'></iframe>",
            "https://contacts.google.com", platform::FrameKind::sub },
        // A page that writes the frame's document itself: the scripts run again in the same window.
        { framed
                + "<iframe id=w></iframe><script>const d = w.contentDocument; for (let i = 0; i < 3; ++i) { d.open(); "
                  "d.write("
                + quoted.substr(0, quoted.size() - 10) + "<\\/script>\"); d.close(); }</script>",
            "https://mail.google.com", platform::FrameKind::sub },
    };
    for (auto const& [html, origin, frame] : cases) {
        SCOPED_TRACE(html);
        received.clear();
        show(html);
        waitUntil([&] { return !received.empty(); }, "post");
        auto const& message = received.back();
        EXPECT_EQ(message.view, &page());
        EXPECT_EQ(message.origin, origin);
        EXPECT_EQ(message.frame, frame);
        for (auto const* const text : { "one \xE2\x80\xA8\"", "two" })
            message.document->call("hear", text);
        message.document->call("constructor.name", "no function of the page");
        waitUntil([&] { return run("heard.length") >= "2"; }, "call");
        EXPECT_EQ(run("heard.join()"), "one \xE2\x80\xA8\",two");
        message.document->call("hear", "three");
        waitUntil([&] { return run("heard.length") == "3"; }, "a call after the first ones");
    }
    // The last page is gone: its successor must not be taken for it.
    auto const old = received.back().document;
    show(script);
    old->call("hear", "not for you");
    EXPECT_EQ(run("heard.join()"), "");
}

}
}
