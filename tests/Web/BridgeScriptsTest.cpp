#include "Bridge/BridgeScripts.h"

#include "Support/Unicode.h"
#include "Web/ScriptPageTest.h"

#include <gmock/gmock.h>

#include <random>

namespace tarn {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string codePoints(std::string_view text)
{
    std::ostringstream points;
    for (std::size_t position = 0; position < text.size();)
        points << std::hex << static_cast<unsigned>(nextCharacter(text, position)) << ' ';
    return points.str();
}

// Texts that have ended strings, lines, scripts and parsers.
std::vector<std::string> hostileTexts()
{
    std::vector<std::string> texts { "", "\"", "\\", "\\\"", "'`${1}", "</script><script>alert(1)//", "<!--<script>",
        "]]>", "\n\r\t\b\f\v", std::string("a\0b", 3), "\xE2\x80\xA8\xE2\x80\xA9", "\x7F\xC2\x80\xEF\xBB\xBF",
        "\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF", "\xEF\xBF\xBE\xEF\xBF\xBF", "\\u0022+alert(1)+\\u0022",
        // Ill-formed: surrogates, overlong forms, pieces.
        "\xED\xA0\x80", "\xED\xBF\xBF", "a\xED\xA0\x80\xED\xB0\x80z", "\xC0\xAF\xE0\x80\xAF", "\xF0\x9F\x98", "\x80",
        "\xFF\"\xE2\x80", "\xF5\x80\x80\x80", "\xF4\x90\x80\x80" };
    std::mt19937 random(20250301);
    char32_t const favourites[] { 0, '"', '\\', '/', '<', '\n', 0x7F, 0x2028, 0x2029, 0xFEFF, 0xFFFD, 0x10FFFF };
    for (int count = 0; count < 2000; ++count) {
        std::string text;
        for (auto length = random() % 24; length > 0; --length) {
            if (random() % 4 == 0) {
                text += static_cast<char>(random());
                continue;
            }
            auto const point = random() % 2 ? favourites[random() % std::size(favourites)] : random() % 0x110000;
            if (point < 0x80)
                text += static_cast<char>(point);
            else if (point < 0x800)
                text += { static_cast<char>(0xC0 | point >> 6), static_cast<char>(0x80 | (point & 0x3F)) };
            else if (point < 0x10000)
                text += { static_cast<char>(0xE0 | point >> 12), static_cast<char>(0x80 | (point >> 6 & 0x3F)),
                    static_cast<char>(0x80 | (point & 0x3F)) };
            else
                text += { static_cast<char>(0xF0 | point >> 18), static_cast<char>(0x80 | (point >> 12 & 0x3F)),
                    static_cast<char>(0x80 | (point >> 6 & 0x3F)), static_cast<char>(0x80 | (point & 0x3F)) };
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

// The script among pages that only record what it posts.
class NotificationScriptTest : public test::ScriptPageTest {
protected:
    NotificationScriptTest()
    {
        addScript("window.posted = [];"
                  "const record = (message) => { posted.push(JSON.stringify(message)); };"
                  "window.answerPermission = () => Promise.resolve('granted');"
                  "window.webkit = { messageHandlers: { tarnNotify: { postMessage: record },"
                  "tarnNotifyPermission: { postMessage: (message) => window.answerPermission(message) } } };");
        addScript(BridgeScripts::notifications("default"));
    }

    std::string posted() { return run("posted.join(' ')"); }
};

TEST_F(NotificationScriptTest, TheEngineReadsBackEveryText)
{
    show("");
    auto const texts = hostileTexts();
    std::string list;
    std::string expected;
    for (auto const& text : texts) {
        auto const literal = BridgeScripts::jsString(text);
        ASSERT_THAT(literal, Not(HasSubstr("</")));
        list += literal + ",";
        expected += codePoints(text) + ",";
    }
    EXPECT_EQ(
        run("[" + list + "].map(t => [...t].map(c => c.codePointAt(0).toString(16) + ' ').join('') + ',').join('')"),
        expected);
}

TEST_F(NotificationScriptTest, PostsWhatAPageAsksFor)
{
    struct Case {
        char const* arguments;
        char const* message;
    };
    Case const cases[] {
        { "'Only a title'", R"({"type":"show","id":"1","title":"Only a title","body":"","tag":"","silent":false})" },
        { "5, { tag: 0, body: 7, silent: 1, icon: 'i', data: {} }",
            R"({"type":"show","id":"1","title":"5","body":"7","tag":"","silent":true})" },
        { "", R"({"type":"show","id":"1","title":"undefined","body":"","tag":"","silent":false})" },
        { "'x', null", R"({"type":"show","id":"1","title":"x","body":"","tag":"","silent":false})" },
        { "'x', { body: ['a', 'b'], tag: 't', silent: '' }",
            R"({"type":"show","id":"1","title":"x","body":"a,b","tag":"t","silent":false})" },
    };
    for (auto const& [arguments, message] : cases) {
        show("");
        run("void new Notification(" + std::string(arguments) + ")");
        EXPECT_EQ(posted(), message);
    }
    EXPECT_EQ(run("Object.keys(new Notification('t', { icon: 'i', data: 3 })).join()"),
        "title,body,tag,icon,data,silent,onclick,onclose,onshow,onerror,_id,_listeners");
    EXPECT_EQ(
        run("((n) => n.close() || posted.at(-1) + n._id)(new Notification('t'))"), R"({"type":"close","id":"3"}3)");
    EXPECT_EQ(run("Object.keys(window).filter(k => /tarn|regist|nextId/i.test(k)).sort().join()"),
        "__tarnNotificationClicked,__tarnNotificationClosed,__tarnNotificationsInstalled,__"
        "tarnSetNotificationPermission");
}

TEST_F(NotificationScriptTest, FiresEventsOnThePagesOwnObject)
{
    show("<script>console.error = (error) => posted.push('error ' + error.message);"
         "const n = window.n = new Notification('t');"
         "n.onclick = function(e) { posted.push('onclick ' + (this === n) + (e.target === n) + e.type); throw new "
         "Error('a'); };"
         "const twice = () => { posted.push('listener'); n.removeEventListener('click', twice); };"
         "n.addEventListener('click', twice); n.addEventListener('click', twice);"
         "n.addEventListener('constructor', () => posted.push('odd name'));"
         "n.onclose = () => posted.push('closed'); n.onshow = () => posted.push('shown'); posted.length = 0;"
         "</script>");
    auto const happens = [&](std::string const& action, std::string const& events) {
        run("void (posted.length = 0, " + action + ")");
        EXPECT_EQ(run("posted.filter(p => p[0] !== '{').join()"), events) << action;
    };
    happens("__tarnNotificationClicked(1)", "onclick truetrueclick,error a,listener,listener");
    happens("__tarnNotificationClicked('1')", "onclick truetrueclick,error a");
    happens("__tarnNotificationClicked('2')", "");
    happens("posted.push(n.dispatchEvent({ type: 'constructor' }))", "odd name,true");
    happens("n.dispatchEvent(Object.freeze(new Event('close')))", "closed");
    happens("n.close()", "closed");
    happens("__tarnNotificationClicked('1')", "");
    happens("window.m = new Notification('m'), m.onclose = n.onclose, __tarnNotificationClosed('2')", "closed");
    happens("__tarnNotificationClosed('2'), __tarnNotificationClicked('2')", "");
    run("void (posted.length = 0, window.o = new Notification('o'), o.onshow = n.onshow)");
    waitUntil([&] { return run("posted.at(-1)") == "shown"; }, "the show event");
}

TEST_F(NotificationScriptTest, PermissionIsWhatTheApplicationSays)
{
    show("");
    EXPECT_EQ(run("Notification.permission + Notification.maxActions"), "default0");
    EXPECT_EQ(run("(Notification.permission = 'granted', Notification.permission)"), "default");
    run("void __tarnSetNotificationPermission('denied')");
    EXPECT_EQ(run("Notification.permission"), "denied");
    EXPECT_EQ(run("Notification.requestPermission(p => posted.push('old style ' + p))"), "granted");
    EXPECT_EQ(run("Notification.permission + ' ' + posted.at(-1)"), "granted old style granted");
    // A page that breaks the road gets what is known.
    for (auto const* const damage : { "webkit.messageHandlers.tarnNotifyPermission.postMessage = null",
             "delete webkit.messageHandlers.tarnNotifyPermission", "delete window.webkit", "window.webkit = 5" }) {
        run(std::string("void (") + damage + ")");
        EXPECT_EQ(run("Notification.requestPermission()"), "granted") << damage;
        EXPECT_EQ(run("new Notification('x').title"), "x") << damage;
    }
}

TEST_F(NotificationScriptTest, ASecondInstallationChangesNothing)
{
    show("<iframe id=f srcdoc='<p>frame'></iframe>");
    auto const again = BridgeScripts::notifications("granted");
    for (auto const* const place : { "window", "f.contentWindow" }) {
        EXPECT_EQ(run(std::string("((w) => { const first = w.Notification; new first('a'); w.eval(")
                      + BridgeScripts::jsString(again)
                      + "); new w.Notification('b');"
                        "return [first === w.Notification, w.Notification.permission, w.posted.length].join(); })("
                      + place + ")"),
            "true,default,2")
            << place;
    }
}

TEST_F(NotificationScriptTest, StandsInFramesOfEveryKind)
{
    show(
        "<iframe id=s srcdoc='<p>'></iframe><iframe id=b></iframe><iframe id=w></iframe>"
        "<script>w.contentDocument.open(); w.contentDocument.write('<p>written'); w.contentDocument.close();</script>");
    for (auto const* const frame : { "s", "b", "w" })
        EXPECT_EQ(run(std::string(frame) + ".contentWindow.Notification.name"), "TarnNotification") << frame;
}

}
}
