#include "Profiles/ProfilesFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace tarn {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

constexpr auto text = R"({
  "activeID": "A0000000-0000-4000-8000-00000000000B",
  "profiles": [
    {
      "avatarFile": "B0000000-0000-4000-8000-000000000001.png",
      "createdAt": "2025-03-01T09:30:00Z",
      "enabledApps": [
        "contacts",
        "mail"
      ],
      "id": "A0000000-0000-4000-8000-00000000000A",
      "name": "Jörg \"日本\" \\ \u0001",
      "zoom": {
        "drive": 1.2000000000000002,
        "mail": 2.0
      }
    },
    {
      "createdAt": "2024-02-29T23:59:59Z",
      "enabledApps": [],
      "id": "A0000000-0000-4000-8000-00000000000B",
      "name": "",
      "zoom": {}
    }
  ]
}
)";

Uuid const first = *Uuid::parse("A0000000-0000-4000-8000-00000000000A");
Uuid const second = *Uuid::parse("A0000000-0000-4000-8000-00000000000B");
SavedProfiles const saved { { { first, "Jörg \"日本\" \\ \x01", "B0000000-0000-4000-8000-000000000001.png",
                                  { GoogleApp::contacts, GoogleApp::mail },
                                  { { GoogleApp::mail, 2.0 }, { GoogleApp::drive, 1.2000000000000002 } },
                                  Timestamp(1740821400s) },
                                { second, "", std::nullopt, {}, {}, Timestamp(1709251199s) } },
    second };

// The file with one value changed, given as a patch (RFC 6902).
std::string patched(char const* operation, char const* path, json const& value = {})
{
    auto const patch = json::array({ { { "op", operation }, { "path", path }, { "value", value } } });
    return json::parse(text).patch(patch).dump();
}

// The file with a piece of its text changed.
std::string replaced(std::string_view from, std::string_view to)
{
    std::string result(text);
    return result.replace(result.find(from), from.size(), to);
}

std::string repeated(std::string_view piece, int times)
{
    std::string result;
    for (int time = 0; time < times; ++time)
        result += piece;
    return result;
}

std::string nested(std::string_view open, std::string_view close)
{
    return repeated(open, 100'000) + repeated(close, 100'000);
}

TEST(ProfilesFile, HasOneForm)
{
    EXPECT_EQ(ProfilesFile::encode(saved), text);
    EXPECT_EQ(ProfilesFile::decode(text), saved);
}

TEST(ProfilesFile, ToleratesWhatChangesNothing)
{
    std::pair<char const*, std::string> const rows[] {
        { "no white space", json::parse(text).dump() },
        { "an unknown key", patched("add", "/version", json::parse(R"([{"a": [{}]}, null])")) },
        { "an unknown key of a profile", patched("add", "/profiles/0/color", "red") },
        { "a null picture", patched("add", "/profiles/1/avatarFile", nullptr) },
        { "a lower-case id", patched("replace", "/activeID", "a0000000-0000-4000-8000-00000000000b") },
        { "a whole number", patched("replace", "/profiles/0/zoom/mail", 2) },
        { "another zone", patched("replace", "/profiles/0/createdAt", "2025-03-01T10:30:00+01:00") },
        { "deep arrays", replaced("\"activeID\"", "\"x\":" + nested("[", "]") + ",\"activeID\"") },
        { "deep objects", replaced("\"createdAt\"", "\"x\":" + nested("{\"x\":[", "]}") + ",\"createdAt\"") },
        { "a million objects", replaced("\"activeID\"", "\"x\":[" + repeated("{},", 1'000'000) + "0],\"activeID\"") },
    };
    for (auto const& [what, file] : rows)
        EXPECT_EQ(ProfilesFile::decode(file), saved) << what;
}

TEST(ProfilesFile, RefusesWhatItCannotTakeAsAWhole)
{
    for (auto const* path : { "/activeID", "/profiles", "/profiles/1/id", "/profiles/1/name", "/profiles/1/enabledApps",
             "/profiles/1/zoom", "/profiles/1/createdAt" }) {
        EXPECT_EQ(ProfilesFile::decode(patched("remove", path)), std::nullopt) << path;
        EXPECT_EQ(ProfilesFile::decode(patched("replace", path, 1)), std::nullopt) << path;
        EXPECT_EQ(ProfilesFile::decode(patched("replace", path)), std::nullopt) << path;
    }

    std::pair<char const*, json> const values[] { { "/profiles", json::object() },
        { "/profiles/0", "A0000000-0000-4000-8000-00000000000A" }, { "/profiles/0/id", "" },
        { "/profiles/0/enabledApps", "mail" }, { "/profiles/0/enabledApps/0", "Contacts" },
        { "/profiles/0/enabledApps/0", json::parse("[[[[[[[[[[]]]]]]]]]]") }, { "/profiles/0/zoom", json::array() },
        { "/profiles/0/zoom/mail", "1.2" }, { "/profiles/0/zoom/mail", true },
        { "/profiles/0/zoom", { { "chat", 1.2 } } }, { "/profiles/0/avatarFile", 1 },
        { "/profiles/0/createdAt", "yesterday" } };
    for (auto const& [path, value] : values)
        EXPECT_EQ(ProfilesFile::decode(patched("replace", path, value)), std::nullopt) << path << value;

    std::pair<char const*, std::string> const texts[] {
        { "zeros", std::string(1000, '\0') },
        { "two values", std::string(text) + "{}" },
        { "not UTF-8", replaced("Jörg", "J\xf6rg") },
        { "half of a surrogate pair", replaced("Jörg", "\\ud800") },
        { "an infinite number", replaced("2.0", "1e999") },
        { "a comment", replaced("2.0", "2.0 /* 200 % */") },
        { "deep arrays", nested("[", "]") },
        { "deep objects in a known key", replaced("{}", nested("{\"mail\":[", "]}")) },
        { "more than 4 MiB", text + std::string(5 << 20, ' ') },
    };
    for (auto const& [what, file] : texts)
        EXPECT_EQ(ProfilesFile::decode(file), std::nullopt) << what;

    std::string_view const whole(text);
    for (std::size_t length = 0; length < whole.size() - 1; ++length)
        EXPECT_EQ(ProfilesFile::decode(whole.substr(0, length)), std::nullopt) << length;
}

TEST(ProfilesFile, WhatJsonCannotSayDoesNotSpoilTheFile)
{
    auto odd = saved;
    odd.profiles[0].name = "J\xf6rg";
    odd.profiles[0].zoom = { { GoogleApp::mail, std::numeric_limits<double>::infinity() },
        { GoogleApp::keep, std::numeric_limits<double>::quiet_NaN() }, { GoogleApp::drive, -0.5 } };

    auto expected = saved;
    expected.profiles[0].name = "J\ufffdrg";
    expected.profiles[0].zoom = { { GoogleApp::drive, -0.5 } };
    EXPECT_EQ(ProfilesFile::decode(ProfilesFile::encode(odd)), expected);
}

}
}
