#include "Profiles/OneXMigration.h"

#include "Support/DurableFile.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Pair;

Timestamp const now = *fromIso8601("2026-01-02T03:04:05Z");

class OneXMigrationTest : public testing::Test {
protected:
    OneXMigrationTest() { std::filesystem::create_directories(folder / "1.x"); }

    std::optional<SavedProfiles> read(std::string const& text)
    {
        std::ofstream(folder / "1.x/profiles.json", std::ios::binary) << text;
        return OneXMigration::readProfiles(folder / "1.x", store, environment);
    }
    // The only profile of a file with this one profile object.
    Profile readProfile(std::string const& object)
    {
        auto const result = read(R"({"profiles": [)" + object + "]}");
        return result ? result->profiles.at(0) : Profile {};
    }

    TemporaryFolder folder;
    ProfileStore::Environment environment { .now = [] { return now; }, .makeUuid = &Uuid::random, .log = [](auto) {} };
    ProfileStore store { folder / "v2", environment };
};

TEST_F(OneXMigrationTest, ProfilesAreTakenOverWithNewIdentifiers)
{
    auto const text = R"({"activeProfileId": "b", "profiles": [
        {"id": "a", "name": "Home"},
        {"id": "b", "name": "  Work ", "enabledApps": ["contacts", "notes", "mail"], "zoom": {"mail": 1, "keep": 0},
         "createdAt": 1700000000000}, {}]})";
    auto const result = read(text);
    ASSERT_TRUE(result);
    ASSERT_EQ(result->profiles.size(), 3);
    auto const& [home, work, nameless] = std::tie(result->profiles[0], result->profiles[1], result->profiles[2]);
    EXPECT_EQ(result->activeID, work.id);
    EXPECT_NE(home.id, work.id);

    EXPECT_EQ(work.name, "  Work ");
    EXPECT_THAT(work.enabledApps, ElementsAre(GoogleApp::mail, GoogleApp::contacts));
    EXPECT_THAT(work.zoom, ElementsAre(Pair(GoogleApp(GoogleApp::mail), testing::DoubleEq(1.2))));
    EXPECT_EQ(toIso8601(work.createdAt), "2023-11-14T22:13:20Z");

    EXPECT_EQ(nameless.name, "Profile 3");
    EXPECT_THAT(nameless.enabledApps, ElementsAreArray(GoogleApp::allCases));
    EXPECT_THAT(nameless.zoom, IsEmpty());
    EXPECT_EQ(nameless.createdAt, now);

    EXPECT_EQ(readFile(folder / "1.x/profiles.json"), text) << "the way back to 1.x stays open";
}

TEST_F(OneXMigrationTest, TheActiveProfileIsTheLastOfThatIdentifierOrTheFirst)
{
    auto const position = [&](std::string const& activeMember) {
        auto const result
            = read("{" + activeMember + R"("profiles": [{"id": "a"}, {"id": "b"}, {"id": "b"}, {"id": 1}, {}]})");
        return std::ranges::find(result->profiles, result->activeID, &Profile::id) - result->profiles.begin();
    };
    EXPECT_EQ(position(R"("activeProfileId": "b",)"), 2);
    for (auto const* const other : { "", R"("activeProfileId": "c",)", R"("activeProfileId": 1,)",
             R"("activeProfileId": null,)", R"("activeProfileId": "",)" })
        EXPECT_EQ(position(other), 0) << other;
}

TEST_F(OneXMigrationTest, AFileOfAnotherShapeMigratesNothing)
{
    EXPECT_FALSE(OneXMigration::readProfiles(folder / "nowhere", store, environment));
    for (auto const* const text : { "", "x", "[]", "5", "null", "{}", R"({"profiles": []})", R"({"profiles": {}})",
             R"({"profiles": "a"})", R"({"profiles": [5, "a", null, []]})", R"({"profiles": [{"name": "Home"}]} x)",
             R"({"profiles": [{"name": "Home"})", "{\"profiles\": [{\"name\": \"\xff\xfe\"}]}",
             R"({"profiles": [{"name": "\ud800"}]})" })
        EXPECT_FALSE(read(text)) << text;
    std::filesystem::remove(folder / "1.x/profiles.json");
    std::filesystem::create_directory(folder / "1.x/profiles.json");
    EXPECT_FALSE(OneXMigration::readProfiles(folder / "1.x", store, environment));
}

TEST_F(OneXMigrationTest, AFieldOfAnotherTypeCountsAsMissing)
{
    std::vector<std::string> values { "null", "true", "\"\"", "\"x\"", "[]", "{}", "-1", "1e300", "[[]]", "[5, null]",
        "{\"mail\": \"1\", \"x\": 1, \"\": {}}", std::string(5000, '[') + std::string(5000, ']') };
    for (auto const* const field : { "enabledApps", "zoom", "avatarPath", "id" }) {
        for (auto const& value : values) {
            auto const profile = readProfile("{\"" + std::string(field) + "\": " + value + R"(, "name": "Home"})");
            EXPECT_EQ(profile.name, "Home");
            EXPECT_THAT(profile.enabledApps, ElementsAreArray(GoogleApp::allCases)) << field << ": " << value;
            EXPECT_THAT(profile.zoom, IsEmpty()) << field << ": " << value;
            EXPECT_EQ(profile.avatarFile, std::nullopt) << field << ": " << value;
        }
    }
    for (auto const* const name : { "null", "\"\"", "5", "[\"Home\"]" })
        EXPECT_EQ(readProfile("{\"name\": " + std::string(name) + "}").name, "Profile 1") << name;
    for (auto const* const date : { "null", "true", "\"1700000000000\"", "1e300", "-1e300", "[1700000000000]" })
        EXPECT_EQ(readProfile("{\"createdAt\": " + std::string(date) + "}").createdAt, now) << date;
    EXPECT_EQ(readProfile(R"({"name": "A", "name": "B"})").name, "B");
    EXPECT_THAT(
        readProfile(R"({"enabledApps": ["Mail", "tasks", "tasks"]})").enabledApps, ElementsAre(GoogleApp::tasks));
}

TEST_F(OneXMigrationTest, ZoomLevelsBecomeFactorsOfTheScale)
{
    struct {
        char const* level;
        double factor;
    } const cases[] { { "1", 1.2 }, { "0.5", 1.0954451150103321 }, { "9", 2.48832 }, { "-9", 0.5787037037037037 },
        { "1e308", 2.48832 }, { "0", 1.0 }, { "0.001", 1.0 } };
    for (auto const& [level, factor] : cases) {
        auto const zoom = readProfile("{\"zoom\": {\"drive\": " + std::string(level) + "}}").zoom;
        EXPECT_EQ(zoom.size(), factor == 1.0 ? 0 : 1) << level;
        EXPECT_NEAR(zoom.empty() ? 1.0 : zoom.at(GoogleApp::drive), factor, 1e-12) << level;
    }
}

TEST_F(OneXMigrationTest, PicturesAreCopiedWhenTheyCanBe)
{
    auto const picture = folder / "1.x/Photo.JPG";
    std::ofstream(picture) << "pixels";
    auto const profile = readProfile(R"({"avatarPath": ")" + picture.string() + "\"}");
    ASSERT_TRUE(profile.avatarFile);
    EXPECT_TRUE(profile.avatarFile->ends_with(".jpg"));
    EXPECT_EQ(readFile(*store.avatarImage(profile)), "pixels");
    EXPECT_TRUE(std::filesystem::exists(picture));

    for (auto const& path : { (folder / "gone.png").string(), folder.path().string(), std::string("Photo.JPG"),
             picture.string() + "\\u0000.png", std::string("/dev/zero") })
        EXPECT_EQ(readProfile(R"({"name": "Home", "avatarPath": ")" + path + "\"}").avatarFile, std::nullopt) << path;
}

TEST_F(OneXMigrationTest, HostileSizeIsBounded)
{
    std::string many = R"({"profiles": [{"name": "Home"})";
    while (many.size() < 1'000'000)
        many += ",{}";
    auto const result = read(many + "]}");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->profiles[0].name, "Home");
    EXPECT_EQ(result->profiles.size(), 1000);

    auto const deep = std::string(500'000, '[') + std::string(500'000, ']');
    EXPECT_EQ(readProfile(R"({"name": "Home", "zoom": )" + deep + "}").name, "Home");
    EXPECT_FALSE(read(std::string(1 << 19, '{')));
    for (int const megabytes : { 2, 50 })
        EXPECT_FALSE(read(R"({"profiles": [{"name": ")" + std::string(megabytes << 20, 'x') + R"("}]})"));
}

}
}
