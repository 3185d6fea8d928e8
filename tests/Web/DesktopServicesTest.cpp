// What Tarn says to, and hears from, the services of the desktop, on a real bus.

#include "Platform/Gtk/BusSignal.h"
#include "Platform/Gtk/DockTile.h"
#include "Platform/Gtk/LoginItem.h"
#include "Platform/Gtk/PowerMonitor.h"
#include "Platform/Gtk/Renderers.h"
#include "Platform/Gtk/SessionClient.h"
#include "Platform/Gtk/Workspace.h"
#include "Web/BusService.h"
#include "Web/WebTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

namespace tarn::test {
namespace {

class DesktopServicesTest : public WebTest {
protected:
    DesktopServicesTest()
    {
        auto* const address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
        // The system's services of these tests are on the same bus.
        g_setenv("DBUS_SYSTEM_BUS_ADDRESS", address, TRUE);
        g_free(address);
        m_bus = gtk::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    }

    GDBusConnection* bus() const { return m_bus.get(); }
    // The reason, or "" when it is done.
    std::string set(platform::LoginItem& item, bool enabled)
    {
        std::optional<std::string> answer;
        item.setEnabled(
            enabled, { [&](std::optional<std::string> const& problem) { answer = problem.value_or(""); }, "dropped" });
        waitUntil([&] { return answer.has_value(); }, "answer");
        return answer.value_or("");
    }

private:
    gtk::Ref<GDBusConnection> m_bus;
};

TEST_F(DesktopServicesTest, WakesUpWithTheComputer)
{
    gtk::PowerMonitor power;
    int resumed = 0;
    power.setOnResume([&] { ++resumed; });
    BusService const logind("org.freedesktop.login1");
    BusService const stranger("org.example.Stranger");
    auto const say = [](BusService const& who, GVariant* what) {
        who.emit("/org/freedesktop/login1", "org.freedesktop.login1.Manager", "PrepareForSleep", what);
    };
    // What one says arrives in its order: with the marker all before it has come.
    bool marked = false;
    auto const system = gtk::adopt(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    gtk::BusSignal const markers(system.get(),
        { .service = "org.freedesktop.login1",
            .path = "/",
            .interface = "org.example.I",
            .name = "Marker",
            .type = "()" },
        [&](GVariant*) { marked = true; });
    auto const settle = [&] {
        marked = false;
        logind.emit("/", "org.example.I", "Marker", g_variant_new("()"));
        waitUntil([&] { return marked; }, "marker");
    };
    // Until the subscription is there nobody hears it.
    waitUntil(
        [&] {
            say(logind, g_variant_new("(b)", FALSE));
            return resumed > 0;
        },
        "first wake-up");
    settle();
    resumed = 0;
    say(stranger, g_variant_new("(b)", FALSE));
    say(logind, g_variant_new("(b)", TRUE));
    say(logind, g_variant_new("(s)", "nonsense"));
    settle();
    EXPECT_EQ(resumed, 0);
    say(logind, g_variant_new("(b)", FALSE));
    settle();
    EXPECT_EQ(resumed, 1);
}

TEST_F(DesktopServicesTest, EndsWithTheSession)
{
    constexpr char const* privateInterface = "org.gnome.SessionManager.ClientPrivate";
    BusService manager("org.gnome.SessionManager");
    std::string registered;
    manager.serve("/org/gnome/SessionManager", "org.gnome.SessionManager",
        "<method name='RegisterClient'><arg direction='in' type='s'/><arg direction='in' type='s'/>"
        "<arg direction='out' type='o'/></method>",
        [&](auto const&, GVariant* parameters) {
            char const* id = nullptr;
            g_variant_get(parameters, "(&ss)", &id, nullptr);
            registered = id;
            return g_variant_new("(o)", "/client/7");
        });
    int answers = 0;
    manager.serve("/client/7", privateInterface,
        "<method name='EndSessionResponse'><arg direction='in' type='b'/><arg direction='in' type='s'/></method>",
        [&](auto const&, GVariant* parameters) {
            gboolean agreed = FALSE;
            g_variant_get(parameters, "(bs)", &agreed, nullptr);
            answers += agreed;
            return g_variant_new("()");
        });
    int ends = 0;
    gtk::SessionClient const client(bus(), "io.github.tarn.Tarn", [&] { ++ends; });
    waitUntil(
        [&] {
            manager.emit("/client/7", privateInterface, "QueryEndSession", g_variant_new("(u)", 0U));
            return answers > 0;
        },
        "agreement");
    EXPECT_EQ(registered, "io.github.tarn.Tarn");
    EXPECT_EQ(ends, 0) << "another application may still object";
    manager.emit("/client/8", privateInterface, "Stop", g_variant_new("()"));
    manager.emit("/client/7", privateInterface, "EndSession", g_variant_new("(u)", 0U));
    waitUntil([&] { return ends > 0; }, "end");
    EXPECT_EQ(ends, 1);
}

TEST_F(DesktopServicesTest, TellsEachDockTheCount)
{
    gtk::DockTile tile(Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION), "io.github.tarn.Tarn");
    int changes = 0;
    tile.setOnShownChange([&] { ++changes; });
    for (int start = 1; start <= 2; ++start) {
        BusService const dock("com.canonical.Unity");
        std::string shown;
        gtk::BusSignal const updates(dock.bus(),
            { .service = nullptr,
                .path = "/com/canonical/unity/launcherentry/1",
                .interface = "com.canonical.Unity.LauncherEntry",
                .name = "Update",
                .type = "(sa{sv})" },
            [&](GVariant* update) {
                auto* const text = g_variant_print(update, FALSE);
                shown = text;
                g_free(text);
            });
        waitUntil([&] { return tile.isShown(); }, "dock");
        tile.setBadge(start);
        waitUntil(
            [&] {
                return shown.starts_with("('application://io.github.tarn.Tarn.desktop', {")
                    && shown.find("'count': <int64 " + std::to_string(start) + ">") != shown.npos
                    && shown.find("'count-visible': <true>") != shown.npos;
            },
            "count on the dock");
    }
    waitUntil([&] { return !tile.isShown(); }, "end of the dock");
    EXPECT_GE(changes, 3);
}

TEST_F(DesktopServicesTest, LaunchedProgramsDrawAsTheyLike)
{
    g_setenv("WEBKIT_FORCE_COMPOSITING_MODE", "1", TRUE);
    gtk::chooseRenderers(Rendering::safe);
    auto const chosen = gtk::chosenRendererVariables();
    EXPECT_GE(chosen.size(), 3U);
    EXPECT_EQ(g_getenv("WEBKIT_DISABLE_COMPOSITING_MODE"), nullptr) << "the user wants the contrary";

    auto const received = folder / "received";
    auto const program = folder / "browser";
    std::ofstream(program) << "#!/bin/sh\nenv > '" << received.string() << ".part'\nmv '" << received.string()
                           << ".part' '" << received.string() << "'\n";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    std::filesystem::path const applications = std::filesystem::path(g_get_user_data_dir()) / "applications";
    std::filesystem::create_directories(applications);
    std::filesystem::create_directories(g_get_user_config_dir());
    std::ofstream(applications / "browser.desktop")
        << "[Desktop Entry]\nType=Application\nName=Browser\nExec=" << program.string() << " %u\n";
    std::ofstream(std::filesystem::path(g_get_user_config_dir()) / "mimeapps.list")
        << "[Default Applications]\nx-scheme-handler/https=browser.desktop\n";
    gtk::Workspace desktop(TARN_APPLICATION_ID, runLoop, [](std::string const& line) { ADD_FAILURE() << line; });
    desktop.open(*Url::parse("https://a.example/"));
    waitUntil([&] { return std::filesystem::exists(received); }, "browser");
    std::ifstream environment(received);
    for (std::string line; std::getline(environment, line);) {
        EXPECT_TRUE(std::ranges::none_of(chosen, [&](std::string const& name) { return line.starts_with(name + "="); }))
            << line;
    }
}

TEST_F(DesktopServicesTest, StartsAtLogInByAFileOfTheUser)
{
    gtk::LoginItem item(
        gtk::LoginItem::Road::autostartFolder, "io.github.tarn.Nowhere", folder.path(), defaults, runLoop, bus());
    auto const file = folder / "autostart/io.github.tarn.Nowhere.desktop";
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(set(item, true), "");
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(std::system(("desktop-file-validate " + file.string()).c_str()), 0);
    auto const program = std::filesystem::read_symlink("/proc/self/exe").string();
    EXPECT_THAT(read(file), testing::HasSubstr("Exec=\"" + program + "\" --hidden\n"));

    // As desktops' own settings switch it off.
    std::ofstream(file, std::ios::app) << "Hidden=true\n";
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(set(item, true), "");
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(set(item, false), "");
    EXPECT_EQ(set(item, false), "") << "what is off can be switched off";
    EXPECT_FALSE(std::filesystem::exists(file));

    std::filesystem::remove(folder / "autostart");
    std::ofstream(folder / "autostart") << "in the way";
    EXPECT_NE(set(item, true), "");
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(DesktopServicesTest, StartsAtLogInByThePortal)
{
    gtk::LoginItem item(gtk::LoginItem::Road::portal, "io.github.tarn.Tarn", folder.path(), defaults, runLoop, bus());
    EXPECT_NE(set(item, true), "") << "there is no portal";

    BusService portal("org.freedesktop.portal.Desktop");
    guint32 response = 0;
    bool grant = true;
    std::string asked;
    portal.serve("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Background",
        "<method name='RequestBackground'><arg direction='in' type='s'/><arg direction='in' type='a{sv}'/>"
        "<arg direction='out' type='o'/></method>",
        [&](auto const&, GVariant* parameters) {
            auto* const text = g_variant_print(parameters, FALSE);
            asked = text;
            g_free(text);
            auto* const options = g_variant_get_child_value(parameters, 1);
            char const* token = nullptr;
            g_variant_lookup(options, "handle_token", "&s", &token);
            std::string sender = g_dbus_connection_get_unique_name(bus()) + 1;
            std::replace(sender.begin(), sender.end(), '.', '_');
            auto const path = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
            g_variant_unref(options);
            GVariantBuilder results;
            g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
            g_variant_builder_add(&results, "{sv}", "autostart", g_variant_new_boolean(grant));
            // Before the call's own answer, as a portal may that need not ask.
            portal.emit(
                path, "org.freedesktop.portal.Request", "Response", g_variant_new("(ua{sv})", response, &results));
            return g_variant_new("(o)", path.c_str());
        });
    EXPECT_EQ(set(item, true), "");
    EXPECT_THAT(asked, testing::HasSubstr("'commandline': <['tarn', '--hidden']>"));
    EXPECT_TRUE(item.isEnabled());
    EXPECT_FALSE(std::filesystem::exists(folder / "autostart"));
    grant = false;
    EXPECT_EQ(set(item, false), "");
    EXPECT_FALSE(item.isEnabled());
    EXPECT_THAT(set(item, true), testing::HasSubstr("did not allow"));
    response = 1;
    grant = true;
    EXPECT_THAT(set(item, true), testing::HasSubstr("did not allow"));
    EXPECT_FALSE(item.isEnabled());
}

}
}
