#include "Platform/Gtk/NotificationCenter.h"

#include "Web/FakeNotificationDaemon.h"
#include "Web/RealNotificationDaemon.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>

#include <string_view>

namespace tarn {
namespace {

using platform::AuthorizationStatus;
using platform::NotificationPresentation;
using platform::NotificationRequest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class NotificationCenterTest : public test::WebTest, public platform::NotificationCenterDelegate {
protected:
    NotificationCenterTest()
    {
        center->setDelegate(this);
        center->onActivationToken = [this](std::string const& token) { events.push_back("token " + token); };
    }

    NotificationPresentation willPresent(NotificationRequest const&) override { return presentation; }
    void didReceive(platform::NotificationResponse const& response) override
    {
        auto const reveal = response.userInfo.find("reveal");
        events.push_back(response.identifier + (reveal == response.userInfo.end() ? "" : " " + reveal->second));
    }

    // The error, or "" once it is shown.
    std::shared_ptr<std::optional<std::string>> startAdding(NotificationRequest const& request)
    {
        auto answer = std::make_shared<std::optional<std::string>>();
        center->add(request, [answer](std::optional<std::string> const& error) { *answer = error.value_or(""); });
        return answer;
    }
    std::string add(NotificationRequest const& request)
    {
        auto const answer = startAdding(request);
        EXPECT_FALSE(answer->has_value()) << "not before add() has returned";
        waitUntil([&] { return answer->has_value(); }, "answer for " + request.identifier);
        return answer->value_or("");
    }
    platform::Authorization authorization()
    {
        std::optional<platform::Authorization> answer;
        center->requestAuthorization([&](platform::Authorization const& given) { answer = given; });
        waitUntil([&] { return answer.has_value(); }, "authorisation");
        return *answer;
    }
    // What happens until a click on this one, which works, has come.
    std::vector<std::string> eventsUntil(
        test::FakeNotificationDaemon const& daemon, std::uint32_t id, std::string const& identifier)
    {
        daemon.emitAction(id);
        waitUntil([&] { return !events.empty() && events.back() == identifier; }, "click on " + identifier);
        auto result = std::exchange(events, {});
        result.pop_back();
        return result;
    }

    NotificationPresentation presentation { NotificationPresentation::banner };
    std::vector<std::string> events;
    std::unique_ptr<gtk::NotificationCenter> center { std::make_unique<gtk::NotificationCenter>(
        Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), "io.github.tarn.Tarn") };
};

TEST_F(NotificationCenterTest, SaysItInTheDaemonsWords)
{
    test::FakeNotificationDaemon daemon;
    EXPECT_EQ(add({ .identifier = "a",
                  .title = "<b>R & D</b>",
                  .body = "1 < 2 & \"so\" <img src='x'>\n" + std::string("nul\0.", 5) + "\xFF",
                  .sound = platform::NotificationSound::standard }),
        "");
    ASSERT_THAT(daemon.notices, SizeIs(1));
    auto const& notice = daemon.notices[0];
    EXPECT_EQ(notice.applicationName, "Tarn");
    EXPECT_EQ(notice.icon, "io.github.tarn.Tarn");
    EXPECT_EQ(notice.title, "<b>R & D</b>");
    EXPECT_EQ(notice.body, "1 &lt; 2 &amp; &quot;so&quot; &lt;img src=&apos;x&apos;&gt;\nnul\uFFFD.\uFFFD");
    EXPECT_THAT(notice.actions, ElementsAre("default", "Open"));
    EXPECT_THAT(notice.hints,
        UnorderedElementsAre(Pair("desktop-entry", "'io.github.tarn.Tarn'"), Pair("urgency", "0x01"),
            Pair("sound-name", "'message-new-email'")));

    add({ .identifier = "b" });
    EXPECT_THAT(daemon.notices[1].hints,
        UnorderedElementsAre(testing::_, Pair("urgency", "0x01"), Pair("suppress-sound", "true")));
    presentation = NotificationPresentation::listOnly;
    add({ .identifier = "c", .sound = platform::NotificationSound::standard });
    EXPECT_THAT(daemon.notices[2].hints,
        UnorderedElementsAre(testing::_, Pair("urgency", "0x00"), Pair("suppress-sound", "true")));
}

TEST_F(NotificationCenterTest, AsksNothingOfADaemonThatCannot)
{
    test::FakeNotificationDaemon daemon { { "body" } };
    add({ .identifier = "a", .title = "t", .body = "1 < 2" });
    EXPECT_EQ(daemon.notices.at(0).body, "1 < 2");
    EXPECT_THAT(daemon.notices[0].actions, IsEmpty());
}

TEST_F(NotificationCenterTest, ClicksComeBackAndOnlyItsOwn)
{
    test::FakeNotificationDaemon daemon;
    add({ .identifier = "a", .userInfo = { { "reveal", "/tmp/x" } } });
    add({ .identifier = "b" });
    daemon.emitAction(77);
    daemon.emitToken(77, "foreign");
    daemon.emitToken(1, "for a");
    daemon.emitAction(1);
    daemon.emitAction(1);
    EXPECT_THAT(eventsUntil(daemon, 2, "b"), ElementsAre("token for a", "a /tmp/x", "a /tmp/x"));

    // What is closed has no clicks any more: the id may be somebody else's.
    daemon.emitClosed(1);
    daemon.emitAction(1);
    EXPECT_THAT(eventsUntil(daemon, 2, "b"), IsEmpty());
    daemon.nextID = 1;
    add({ .identifier = "c" });
    EXPECT_THAT(eventsUntil(daemon, 1, "c"), IsEmpty());
    // Given again without a word: it names the last one only.
    daemon.nextID = 2;
    add({ .identifier = "d" });
    EXPECT_THAT(eventsUntil(daemon, 2, "d"), IsEmpty());
    center->remove("b");
    add({ .identifier = "e" });
    EXPECT_THAT(daemon.closed, IsEmpty());
}

TEST_F(NotificationCenterTest, AClickMayOvertakeTheAnswer)
{
    test::FakeNotificationDaemon daemon;
    daemon.onNotify = [&](std::uint32_t id) { daemon.emitAction(id); };
    add({ .identifier = "a" });
    waitUntil([&] { return !events.empty(); }, "click");
    EXPECT_THAT(events, ElementsAre("a"));
}

TEST_F(NotificationCenterTest, ReplacesAndRemoves)
{
    test::FakeNotificationDaemon daemon;
    add({ .identifier = "a", .title = "1" });
    add({ .identifier = "a", .title = "2" });
    EXPECT_EQ(daemon.notices.at(1).replaces, 1);
    center->remove("a");
    center->remove("a");
    center->remove("never shown");
    waitUntil([&] { return !daemon.closed.empty(); }, "close");
    add({ .identifier = "a", .title = "3" });
    EXPECT_EQ(daemon.notices.at(2).replaces, 0);
    EXPECT_THAT(daemon.closed, ElementsAre(1));
}

TEST_F(NotificationCenterTest, LateIdsAreWaitedFor)
{
    test::FakeNotificationDaemon daemon;
    add({ .identifier = "first" });
    daemon.setHanging(true);
    auto const removed = startAdding({ .identifier = "removed" });
    center->remove("removed");
    auto const one = startAdding({ .identifier = "a", .title = "1" });
    auto const two = startAdding({ .identifier = "a", .title = "2" });
    auto const three = startAdding({ .identifier = "a", .title = "3" });
    waitUntil([&] { return two->has_value(); }, "the one that was never sent");
    EXPECT_FALSE(one->has_value());
    daemon.setHanging(false);
    waitUntil([&] { return three->has_value() && removed->has_value() && !daemon.closed.empty(); }, "answers");
    EXPECT_EQ(daemon.notices.back().title, "3");
    EXPECT_EQ(daemon.notices.back().replaces, 3) << "the id that the first one got late";
    EXPECT_THAT(daemon.notices, SizeIs(4));
    EXPECT_THAT(daemon.closed, ElementsAre(2));
}

TEST_F(NotificationCenterTest, ADaemonMayEndAndStartAgain)
{
    {
        test::FakeNotificationDaemon daemon;
        add({ .identifier = "old" });
        daemon.setHanging(true);
        auto const lost = startAdding({ .identifier = "in between" });
        waitUntil([&] { return authorization().status == AuthorizationStatus::authorized; }, "it is still there");
    }
    waitUntil([&] { return authorization().status == AuthorizationStatus::denied; }, "it has gone");
    EXPECT_THAT(authorization().reason, HasSubstr("no program shows notifications"));
    EXPECT_THAT(add({ .identifier = "b" }), HasSubstr("no program shows notifications"));

    test::FakeNotificationDaemon daemon;
    waitUntil([&] { return authorization().status == AuthorizationStatus::authorized; }, "it is back");
    center->remove("old");
    EXPECT_EQ(add({ .identifier = "old", .title = "again" }), "");
    EXPECT_EQ(daemon.notices.at(0).replaces, 0) << "the old id may be somebody else's now";
    EXPECT_THAT(daemon.closed, IsEmpty());
    EXPECT_THAT(eventsUntil(daemon, 1, "old"), IsEmpty());
}

TEST_F(NotificationCenterTest, RepetitionIsTriedAgain)
{
    test::FakeNotificationDaemon daemon;
    std::string const refusal = "org.freedesktop.Notifications.Error.ExcessNotificationGeneration";
    daemon.nextError = refusal;
    EXPECT_EQ(add({ .identifier = "a" }), "");
    EXPECT_THAT(daemon.notices, SizeIs(1));
    daemon.nextError = "org.freedesktop.DBus.Error.LimitsExceeded";
    EXPECT_EQ(add({ .identifier = "b" }), "not now");
    EXPECT_EQ(add({ .identifier = "b" }), "");
}

TEST_F(NotificationCenterTest, EndsWithQuestionsOpen)
{
    test::FakeNotificationDaemon daemon;
    daemon.setHanging(true);
    auto const answer = startAdding({ .identifier = "a" });
    center->authorization([](platform::Authorization const&) { FAIL() << "too late"; });
    waitUntil([&] { return true; }, "");
    center.reset();
    daemon.setHanging(false);
    center = std::make_unique<gtk::NotificationCenter>(
        Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), "io.github.tarn.Tarn");
    EXPECT_EQ(add({ .identifier = "b" }), "");
    EXPECT_FALSE(answer->has_value());
}

class RealDaemonTest : public NotificationCenterTest,
                       public testing::WithParamInterface<test::RealNotificationDaemon::Kind> { };

TEST_P(RealDaemonTest, ShowsAndGivesTheClickBackAlsoAfterARestart)
{
    for (auto const* const identifier : { "first", "after the restart" }) {
        auto daemon = std::make_unique<test::RealNotificationDaemon const>(GetParam());
        waitUntil([&] { return authorization().status == AuthorizationStatus::authorized; }, "daemon");
        EXPECT_EQ(add({ .identifier = "gone", .title = "Not this one" }), "");
        center->remove("gone");
        waitUntil([&] { return !daemon->shows(); }, "the removed one disappears");
        EXPECT_EQ(add({ .identifier = identifier,
                      .title = "<b>R & D</b>",
                      .body = "1 < 2 & \"three\"",
                      .userInfo = { { "reveal", "/tmp/x" } } }),
            "");
        waitUntil([&] { return daemon->shows(); }, "popup");
        waitUntil(
            [&] {
                // It may still be on its way to its place.
                if (events.empty() && daemon->shows())
                    daemon->click();
                return !events.empty();
            },
            "click");
        EXPECT_THAT(std::exchange(events, {}), ElementsAre(std::string(identifier) + " /tmp/x"));
        EXPECT_TRUE(daemon->isRunning());
        daemon.reset();
        waitUntil([&] { return authorization().status == AuthorizationStatus::denied; }, "end");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Desktop, RealDaemonTest, testing::ValuesIn(test::RealNotificationDaemon::kinds()), [](auto const& kind) {
        std::string name = kind.param.name;
        std::erase_if(name, [](char character) { return character == '-'; });
        return name;
    });

TEST_F(NotificationCenterTest, FollowsTheDesktopsOwnSwitch)
{
    auto* const source = g_settings_schema_source_get_default();
    auto* const schema = g_settings_schema_source_lookup(source, "org.gnome.desktop.notifications.application", TRUE);
    ASSERT_NE(schema, nullptr);
    auto const settings = gtk::adopt(
        g_settings_new_full(schema, nullptr, "/org/gnome/desktop/notifications/application/io-github-tarn-tarn/"));
    g_settings_schema_unref(schema);
    test::FakeNotificationDaemon const daemon;
    for (auto const* const desktop : { "ubuntu:GNOME", "KDE", "" }) {
        g_setenv("XDG_CURRENT_DESKTOP", desktop, TRUE);
        center = std::make_unique<gtk::NotificationCenter>(
            Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), "io.github.tarn.Tarn");
        for (bool const on : { true, false, true }) {
            g_settings_set_boolean(settings.get(), "enable", on);
            bool const reads = std::string_view(desktop).find("GNOME") != std::string_view::npos;
            EXPECT_EQ(
                authorization().status, on || !reads ? AuthorizationStatus::authorized : AuthorizationStatus::denied)
                << desktop;
        }
    }
    g_unsetenv("XDG_CURRENT_DESKTOP");
}

}
}
