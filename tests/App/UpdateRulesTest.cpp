#include "App/Appcast.h"
#include "App/Installation.h"
#include "App/Version.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

std::string item(
    std::string const& version, std::string const& more, std::string const& url = "https://u.example/t.deb")
{
    return "<item><description><![CDATA[<h2>New</h2> A &amp; B<ul><li>one</li><li>two "
           "&lt;b&gt;</li></ul>]]></description>"
           "<enclosure url='"
        + url + "' sparkle:version='" + version + "' length='7' " + more + "/></item>";
}

TEST(UpdateRules, VersionsAreComparedByTheirNumbers)
{
    auto const version = [](char const* text) { return *Version::parse(text); };
    EXPECT_LT(version("2.9"), version("2.10"));
    EXPECT_LT(version("2"), version("2.0.1"));
    EXPECT_EQ(version("2.0"), version("2"));
    EXPECT_LT(version("9.9.9"), version("010"));
    for (auto const* const text :
        { "", ".", "2.", ".2", "2..1", "2.0-1", "v2", "2 ", "-1", "+1", "1234567890", "2.0b" })
        EXPECT_FALSE(Version::parse(text)) << text;
}

TEST(UpdateRules, TheNewestUsableReleaseOfAFeedIsTaken)
{
    std::string const sign = "sparkle:edSignature='c2ln'";
    auto const feed = "<?xml version='1.0'?><rss xmlns:sparkle='s'><channel>" + item("2.10", sign) + item("2.9", sign)
        + item("9", "") // not signed
        + item("9", sign, "http://u.example/t.deb") + item("9", sign + " sparkle:os='macos'") + item("nine", sign)
        + "</channel></rss>";
    auto const release = Appcast::newest(feed);
    ASSERT_TRUE(release);
    EXPECT_EQ(release->title, "2.10");
    EXPECT_EQ(release->notes, "New\nA & B\n• one\n• two <b>");
    EXPECT_EQ(release->length, 7U);
    EXPECT_FALSE(Appcast::newest("<rss><channel/></rss>"));
    for (auto const& broken : { std::string(), std::string("<html/>"), feed.substr(0, feed.size() / 2),
             std::string("<!DOCTYPE r [<!ENTITY a 'aa'>]><rss>&a;") })
        EXPECT_THROW(Appcast::newest(broken), std::runtime_error) << broken;

    auto const text = Appcast::plainText(std::string(1'999, 'x') + "ä<b" + std::string(5'000, 'y'));
    EXPECT_EQ(text, std::string(1'999, 'x') + "…") << "cut at a whole character";
}

TEST(UpdateRules, OnlyACopyThatNobodyElseLooksAfterUpdatesItself)
{
    auto const variable = [](std::string const& set) { return [set](std::string const& name) { return name == set; }; };
    struct Row {
        char const* executable;
        char const* variable;
        bool itself;
    };
    for (auto const& row : { Row { "/usr/bin/tarn", "", false }, Row { "/usr/local/bin/tarn", "", true },
             Row { "/usr/local/../bin/tarn", "", false }, Row { "/usrlocal/tarn", "", true },
             Row { "/opt/tarn/bin/tarn", "", true }, Row { "/app/bin/tarn", "FLATPAK_ID", false },
             Row { "/opt/tarn", "SNAP", false }, Row { "/tmp/.mount/tarn", "APPIMAGE", false },
             Row { "/nix/store/x/bin/tarn", "", false } })
        EXPECT_EQ(!Installation::updatedBy(row.executable, variable(row.variable)), row.itself) << row.executable;
}

}
}
