#include "Platform/Gtk/NotificationCenter.h"
#include "Web/FakeNotificationDaemon.h"
#include "Web/RealNotificationDaemon.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class NotificationJourneyTest : public test::WebTest {
protected:
    NotificationJourneyTest()
    {
        notificationCenter = std::make_unique<gtk::NotificationCenter>(
            Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), TARN_APPLICATION_ID);
    }

    gtk::WebView& mail() { return view(GoogleApp::mail); }
    // Mail on the screen, knowing its permission.
    void openMail(std::string const& permission = "granted")
    {
        launch();
        open(GoogleApp::mail);
        waitUntil(
            [&] { return evaluate(mail(), "Notification.permission") == permission; }, "permission " + permission);
    }
    // The address of the message that arrives, and what its notification is to lead to.
    std::string deliver(std::string const& from)
    {
        return "#inbox/" + stage.mailboxes().deliver("ada", from, "Lunch?");
    }
    void hideTheWindow()
    {
        window().close();
        waitUntil([&] { return !window().is_visible(); }, "hidden window");
    }
    void expectMailInFront(std::string const& hash)
    {
        waitUntil([&] { return controller().current() == GoogleApp::mail; }, "mail in front");
        waitUntil([&] { return window().is_visible() && window().is_active(); }, "window in front");
        waitUntil([&] { return evaluate(mail(), "location.hash") == hash; }, "the page's own click event");
    }
    int linesWith(std::string const& text) const
    {
        return static_cast<int>(
            std::ranges::count_if(log, [&](auto const& line) { return line.find(text) != std::string::npos; }));
    }
};

TEST_F(NotificationJourneyTest, AClickLeadsBackToThePage)
{
    auto daemon = std::make_unique<test::FakeNotificationDaemon>();
    openMail();
    auto const first = deliver("Mira");
    waitUntil([&] { return daemon->notices.size() == 1; }, "notification");
    EXPECT_EQ(daemon->notices[0].title, "Mira");
    EXPECT_EQ(daemon->notices[0].body, "Lunch?");

    open(GoogleApp::keep);
    hideTheWindow();
    daemon->emitAction(1);
    expectMailInFront(first);

    // Another daemon counts from one again.
    daemon.reset();
    daemon = std::make_unique<test::FakeNotificationDaemon>();
    auto const second = deliver("Noor");
    waitUntil([&] { return daemon->notices.size() == 1; }, "notification of the new daemon");
    EXPECT_EQ(daemon->notices[0].title, "Noor");
    open(GoogleApp::drive);
    daemon->emitAction(1);
    expectMailInFront(second);

    // A page that has been left hears nothing of its notifications, but its app comes.
    auto const third = deliver("Oskar");
    waitUntil([&] { return daemon->notices.size() == 2; }, "third");
    mail().reload();
    waitUntil(
        [&] { return evaluate(mail(), "performance.getEntriesByType('navigation')[0].type") == "reload"; }, "reload");
    waitForPage(GoogleApp::mail);
    evaluate(mail(),
        "void (location.hash = '#inbox', window.foreign = new Notification('mine'), foreign.onclick = () => { "
        "location.hash = '#wrong' })");
    open(GoogleApp::drive);
    daemon->emitAction(2);
    waitUntil([&] { return controller().current() == GoogleApp::mail; }, "mail in front");
    EXPECT_EQ(evaluate(mail(), "location.hash"), "#inbox");
    EXPECT_EQ(linesWith("[Notifications]"), 0);
}

TEST_F(NotificationJourneyTest, AFrameHearsOfItsOwnClicks)
{
    test::FakeNotificationDaemon const daemon;
    openMail();
    evaluate(mail(), R"js((async () => {
        window.heard = [];
        addEventListener('message', (event) => heard.push(event.data));
        window.own = new Notification('own');
        own.onclick = () => heard.push('clicked own');
        for (const host of ['contacts.google.com', 'news.example']) {
            const frame = document.createElement('iframe');
            frame.src = `https://${host}/_stage/posting.html`;
            const loaded = new Promise((done) => { frame.onload = done; });
            document.body.append(frame);
            await loaded;
            frame.contentWindow.postMessage({ title: host, body: 'a\nb' }, '*');
        }
    })())js");
    waitUntil([&] { return daemon.notices.size() == 3; }, "notifications");
    std::map<std::string, std::uint32_t> ids;
    for (std::uint32_t id = 1; id <= 3; ++id)
        ids[daemon.notices[id - 1].title] = id;
    EXPECT_EQ(daemon.notices[ids["contacts.google.com"] - 1].body, "a\nb");
    EXPECT_EQ(daemon.notices[ids["news.example"] - 1].body, "a b\nhttps://news.example");

    std::string expected;
    open(GoogleApp::keep);
    for (auto const* const title : { "news.example", "own", "contacts.google.com", "news.example" }) {
        daemon.emitAction(ids[title]);
        expected += (expected.empty() ? "clicked " : ",clicked ") + std::string(title);
        waitUntil([&] { return evaluate(mail(), "heard.join()") == expected; }, expected);
    }
    EXPECT_EQ(controller().current(), GoogleApp::mail);
}

TEST_F(NotificationJourneyTest, TheOtherRoadsLeadToTheSamePlace)
{
    test::FakeNotificationDaemon const daemon;
    openMail();
    EXPECT_EQ(evaluate(mail(),
                  "navigator.permissions.query({ name: 'notifications' }).then(s => s.state + (s instanceof "
                  "PermissionStatus))"),
        "grantedtrue");
    EXPECT_EQ(evaluate(mail(), "navigator.permissions.query({ name: 'nonsense' }).catch(e => e.name)"), "TypeError");
    evaluate(mail(), "document.body.insertAdjacentHTML('beforeend', '<iframe id=unasked src=/_stage/posting.html>')");
    waitUntil([&] { return evaluate(mail(), "unasked.contentWindow.Notification.permission") == "granted"; },
        "permission in a frame that has not asked");
    EXPECT_EQ(evaluate(mail(), R"js((async () => {
        const registration = window.registration = await navigator.serviceWorker.register('/_stage/worker.js');
        for (const tag of ['a', 'b', 'a', ''])
            await registration.showNotification('worker ' + tag, { tag, data: { tag } });
        const list = async (filter) => (await registration.getNotifications(filter)).map(n => n.title + n.data.tag);
        window.last = (await registration.getNotifications()).at(-1);
        last.onclick = () => { window.clicked = 'yes' };
        return [await list(), await list({ tag: 'a' }), (last.close, last.title)].join('|');
    })())js"),
        "worker bb,worker aa,worker |worker aa|worker ");
    waitUntil([&] { return daemon.notices.size() == 4; }, "notifications");
    open(GoogleApp::keep);
    daemon.emitAction(4);
    waitUntil([&] { return controller().current() == GoogleApp::mail; }, "mail in front");
    waitUntil([&] { return evaluate(mail(), "window.clicked") == "yes"; }, "click");
    EXPECT_EQ(evaluate(mail(), "(last.close(), registration.getNotifications().then(l => l.length))"), "2");
    waitUntil([&] { return daemon.closed == std::vector<std::uint32_t> { 1, 4 }; }, "the replaced and the closed one");
    // The engine's own permission is another matter, and is never given.
    EXPECT_EQ(evaluate(mail(), R"js((async () => {
        const frame = document.body.appendChild(document.createElement('iframe'));
        frame.sandbox = 'allow-same-origin';
        frame.srcdoc = '';
        await new Promise((done) => { frame.onload = done; });
        return frame.contentWindow.Notification.permission;
    })())js"),
        "default");
    EXPECT_EQ(linesWith("[Notifications]"), 0);
}

TEST_F(NotificationJourneyTest, WithoutADaemonPagesAreToldAndTheLogSaysWhyOnce)
{
    openMail("denied");
    EXPECT_EQ(evaluate(mail(), "Notification.requestPermission()"), "denied");
    EXPECT_EQ(evaluate(mail(), "navigator.permissions.query({ name: 'notifications' }).then(s => s.state)"), "denied");
    EXPECT_EQ(evaluate(mail(),
                  "navigator.serviceWorker.register('/_stage/worker.js').then(r => r.showNotification('x')).catch(e => "
                  "e.name)"),
        "TypeError");
    for (int count = 0; count < 3; ++count)
        EXPECT_EQ(evaluate(mail(), "new Notification('nobody sees it').title"), "nobody sees it");
    open(GoogleApp::keep);
    waitUntil([&] { return evaluate(view(GoogleApp::keep), "Notification.permission") == "denied"; }, "another page");
    EXPECT_THAT(log, Contains(HasSubstr("[Notifications] failed: no program shows notifications")));
    EXPECT_EQ(linesWith("[Notifications]"), 1);

    // One that comes later is as good.
    test::FakeNotificationDaemon const daemon;
    waitUntil([&] { return evaluate(mail(), "Notification.requestPermission()") == "granted"; }, "late daemon");
    deliver("Mira");
    waitUntil([&] { return !daemon.notices.empty(); }, "notification");
    EXPECT_EQ(daemon.notices[0].title, "Mira") << "nothing old comes back";
}

TEST_F(NotificationJourneyTest, ADaemonThatHangsHoldsNothingUp)
{
    test::FakeNotificationDaemon daemon;
    daemon.setHanging(true);
    openMail();
    for (int count = 0; count < 50; ++count)
        evaluate(mail(), "void new Notification('" + std::to_string(count) + "')");
    open(GoogleApp::keep);
    daemon.setHanging(false);
    waitUntil([&] { return daemon.notices.size() == 50; }, "all of them, late");
    for (int count = 0; count < 50; ++count)
        ASSERT_EQ(daemon.notices[static_cast<std::size_t>(count)].title, std::to_string(count));
}

class RealDaemonJourneyTest : public NotificationJourneyTest,
                              public testing::WithParamInterface<test::RealNotificationDaemon::Kind> { };

TEST_P(RealDaemonJourneyTest, FromThePageToTheDesktopAndBack)
{
    test::RealNotificationDaemon const daemon { GetParam() };
    openMail();
    open(GoogleApp::keep);
    hideTheWindow();
    auto const hash = deliver("Mira");
    waitUntil([&] { return daemon.shows(); }, "popup");
    waitUntil(
        [&] {
            if (!window().is_visible() && daemon.shows())
                daemon.click();
            return window().is_visible();
        },
        "click");
    expectMailInFront(hash);
}

INSTANTIATE_TEST_SUITE_P(
    Desktop, RealDaemonJourneyTest, testing::ValuesIn(test::RealNotificationDaemon::kinds()), [](auto const& kind) {
        std::string name = kind.param.name;
        std::erase_if(name, [](char character) { return character == '-'; });
        return name;
    });

}
}
