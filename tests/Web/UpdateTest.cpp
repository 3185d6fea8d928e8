#include "App/UpdaterManager.h"
#include "Certificate.h"
#include "Fakes/FakePanels.h"
#include "Platform/Gtk/Updater.h"
#include "Web/WebTest.h"

#include <libsoup/soup.h>
#include <sodium.h>

#include <fstream>

namespace tarn::test {
namespace {

struct Resource {
    std::string content;
    // A redirect to it, instead of the content.
    std::string location {};
    bool answers { true };
};

// A web server with a certificate of its own.
class FeedServer {
public:
    FeedServer()
        : m_certificate(stage::makeCertificate())
        , m_server(stage::Ref<SoupServer>::adopt(soup_server_new("tls-certificate", m_certificate.get(), nullptr)))
    {
        soup_server_add_handler(m_server.get(), nullptr, &answer, this, nullptr);
        if (!soup_server_listen_local(m_server.get(), 0, SOUP_SERVER_LISTEN_HTTPS, nullptr))
            throw std::runtime_error("no server");
        GSList* const uris = soup_server_get_uris(m_server.get());
        base = "https://localhost:" + std::to_string(g_uri_get_port(static_cast<GUri*>(uris->data)));
        g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    }

    // Its certificate, and no other, is taken.
    void trust(SoupSession* session)
    {
        g_signal_connect(session, "request-queued",
            G_CALLBACK(+[](SoupSession*, SoupMessage* message, FeedServer* server) {
                g_signal_connect(message, "accept-certificate",
                    G_CALLBACK(+[](SoupMessage*, GTlsCertificate* shown, GTlsCertificateFlags, FeedServer* own) {
                        return g_tls_certificate_is_same(shown, own->m_certificate.get());
                    }),
                    server);
            }),
            this);
    }

    std::string base;
    std::map<std::string, Resource> resources;
    std::vector<std::string> requests;

private:
    static void answer(SoupServer*, SoupServerMessage* message, char const* path, GHashTable*, gpointer self)
    {
        auto& server = *static_cast<FeedServer*>(self);
        server.requests.emplace_back(path);
        auto const& resource = server.resources[path];
        if (!resource.answers) {
            soup_server_message_pause(message);
        } else if (!resource.location.empty()) {
            soup_server_message_set_redirect(message, SOUP_STATUS_FOUND, resource.location.c_str());
        } else {
            soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
            soup_server_message_set_response(message, "application/octet-stream", SOUP_MEMORY_COPY,
                resource.content.data(), resource.content.size());
        }
    }

    stage::Ref<GTlsCertificate> m_certificate;
    stage::Ref<SoupServer> m_server;
};

class UpdateTest : public WebTest {
protected:
    UpdateTest()
    {
        if (sodium_init() < 0)
            throw std::runtime_error("no signatures");
        crypto_sign_keypair(publicKey.data(), secretKey.data());
    }

    std::string makePackage(std::string const& version)
    {
        auto const tree = folder / ("package-" + version);
        std::filesystem::create_directories(tree / "DEBIAN");
        std::ofstream(tree / "DEBIAN/control") << "Package: tarn\nVersion: " << version
                                               << "\nArchitecture: all\nMaintainer: T <t@t.example>\nDescription: t\n";
        auto const command
            = "dpkg-deb --root-owner-group --build " + tree.string() + " " + tree.string() + ".deb >/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return read(tree.string() + ".deb");
    }

    static std::string base64(unsigned char const* data, std::size_t size)
    {
        std::string text(sodium_base64_encoded_len(size, sodium_base64_VARIANT_ORIGINAL), '\0');
        sodium_bin2base64(text.data(), text.size(), data, size, sodium_base64_VARIANT_ORIGINAL);
        text.pop_back();
        return text;
    }

    std::string sign(std::string const& content) const
    {
        std::array<unsigned char, crypto_sign_BYTES> signature {};
        crypto_sign_detached(signature.data(), nullptr, reinterpret_cast<unsigned char const*>(content.data()),
            content.size(), secretKey.data());
        return base64(signature.data(), signature.size());
    }

    std::string feed(std::string const& version, std::string const& package) const
    {
        return "<rss xmlns:sparkle='s'><channel><item><description>Better &lt;b&gt;now&lt;/b&gt;</description>"
               "<enclosure url='"
            + server.base + "/tarn.deb' length='" + std::to_string(package.size()) + "' sparkle:version='" + version
            + "' sparkle:edSignature='" + sign(package) + "'/></item></channel></rss>";
    }

    // The program that the desktop has for packages: it leaves the address that it was given in a file.
    std::filesystem::path installPackageProgram()
    {
        auto const received = folder / "received";
        auto const program = folder / "installer";
        std::ofstream(program) << "#!/bin/sh\nprintf %s \"$1\" > '" << received.string() << "'\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        std::filesystem::path const data = g_get_user_data_dir();
        std::filesystem::path const configuration = g_get_user_config_dir();
        std::filesystem::create_directories(data / "applications");
        std::filesystem::create_directories(configuration);
        std::ofstream(data / "applications/installer.desktop")
            << "[Desktop "
               "Entry]\nType=Application\nName=Installer\nMimeType=application/vnd.debian.binary-package;\nExec="
            << program.string() << " %f\n";
        std::ofstream(configuration / "mimeapps.list")
            << "[Default Applications]\napplication/vnd.debian.binary-package=installer.desktop\n";
        return received;
    }

    // The message and the details of the alert that ends a check; an offer is accepted on the way.
    std::string check(std::chrono::milliseconds limit = std::chrono::minutes(1), bool trusted = true)
    {
        gtk::Updater updater({ .folder = folder / "updates",
                                 .timeLimit = limit,
                                 .sessionSetUp =
                                     [&](SoupSession* session) {
                                         if (trusted)
                                             server.trust(session);
                                     } },
            [this](std::string const& line) { log.push_back(line); });
        UpdaterManager manager({ .feedURL = server.base + "/feed.xml",
                                   .publicEDKey = base64(publicKey.data(), publicKey.size()),
                                   .currentVersion = "2.0.0" },
            UpdaterManager::HostsTests::no, &updater, alerts);
        EXPECT_TRUE(manager.canCheckForUpdates());
        manager.checkForUpdates();
        EXPECT_FALSE(manager.canCheckForUpdates());
        std::string outcome;
        waitUntil([&] { return manager.canCheckForUpdates() || !alerts.alerts.empty(); }, "the answer to the check");
        if (!manager.canCheckForUpdates()) {
            offered = alerts.alerts.front().panel.informativeText;
            alerts.press(0);
            waitUntil([&] { return manager.canCheckForUpdates(); }, "the end of the update");
        }
        while (!alerts.alerts.empty()) {
            outcome += alerts.alerts.front().panel.message + ": " + alerts.alerts.front().panel.informativeText;
            alerts.press(0);
        }
        return outcome;
    }

    FeedServer server;
    FakePanels alerts;
    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> publicKey {};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secretKey {};
    std::string offered;
};

TEST_F(UpdateTest, AGoodReleaseIsHandedToTheSystemAndNothingElseIs)
{
    auto const received = installPackageProgram();
    auto const old = makePackage("1.5");
    auto const good = makePackage("2.10");
    auto const has = [&](std::string const& version, std::string const& announced, std::string const& sent) {
        server.resources["/feed.xml"] = { .content = feed(version, announced) };
        server.resources["/tarn.deb"] = { .content = sent };
    };
    auto const expect = [&](std::string const& part, std::string const& outcome) {
        EXPECT_NE(outcome.find(part), std::string::npos) << outcome << " instead of: " << part;
        EXPECT_FALSE(std::filesystem::exists(received)) << part;
    };

    has("2.10", good, good);
    expect("cannot be reached safely", check(std::chrono::minutes(1), false));
    EXPECT_TRUE(server.requests.empty()) << "nothing is asked of a server that shows a strange certificate";

    has("1.5", old, old);
    expect("is the newest version", check());
    has("9.0", old, old);
    expect("not the version that was announced", check());
    auto tampered = good;
    tampered[tampered.size() / 2] = static_cast<char>(tampered[tampered.size() / 2] ^ 1);
    has("2.10", good, tampered);
    expect("not signed", check());
    has("2.10", good, good.substr(0, good.size() - 1));
    expect("incomplete", check());
    has("2.10", good, good + "x");
    expect("more than it should", check());
    server.resources["/feed.xml"].content.append(1024UL * 1024, ' ');
    expect("more than it should", check());
    server.resources["/feed.xml"] = { .content = "<rss>" };
    expect("the list of releases cannot be read", check());
    server.resources["/feed.xml"] = { .content = {}, .location = "http://localhost/feed.xml" };
    expect("not secure", check());
    server.resources["/feed.xml"] = { .content = {}, .location = server.base + "/feed.xml" };
    expect("without end", check());
    server.resources["/feed.xml"] = { .content = {}, .answers = false };
    expect("too long", check(std::chrono::milliseconds(200)));

    has("2.10", good, good);
    server.resources["/moved.xml"] = server.resources["/feed.xml"];
    server.resources["/feed.xml"] = { .content = {}, .location = server.base + "/moved.xml" };
    EXPECT_EQ(check(), "");
    EXPECT_EQ(offered, "Version 2.10 is available; you have version 2.0.0.\n\nBetter now");
    waitUntil([&] { return !read(received).empty(); }, "the package at the desktop's installer");
    EXPECT_EQ(read(received), (folder / "updates/tarn-update.deb").string());
    EXPECT_EQ(read(read(received)), good);
}

TEST_F(UpdateTest, WhoeverUpdatesThisCopyIsNamedAndTheServerLeftAlone)
{
    gtk::Updater updater({ .folder = folder / "updates" }, [](std::string const&) {});
    UpdaterManager::Configuration configuration { .feedURL = server.base + "/feed.xml", .publicEDKey = "key" };
    configuration.updatedBy = "Flatpak";
    UpdaterManager managed(configuration, UpdaterManager::HostsTests::no, &updater, alerts);
    managed.checkForUpdates();
    ASSERT_EQ(alerts.alerts.size(), 1U);
    EXPECT_EQ(alerts.alerts.front().panel.informativeText, "This copy of Tarn is updated by Flatpak.");
    EXPECT_TRUE(server.requests.empty());

    UpdaterManager tested(configuration, UpdaterManager::HostsTests::yes, &updater, alerts);
    EXPECT_TRUE(tested.isConfigured());
    EXPECT_FALSE(tested.isActive());
    configuration.publicEDKey.clear();
    UpdaterManager unconfigured(configuration, UpdaterManager::HostsTests::no, &updater, alerts);
    EXPECT_FALSE(unconfigured.isConfigured());
    EXPECT_FALSE(unconfigured.validate(platform::Command::checkForUpdates, 0)->enabled);
}

}
}
