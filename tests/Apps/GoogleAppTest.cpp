#include "Apps/GoogleApp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <unordered_map>

namespace tarn {

namespace {

TEST(GoogleAppTest, CatalogueInOrder)
{
    struct Row {
        GoogleApp app;
        std::string_view rawValue;
        std::string_view title;
        std::string_view url;
        std::string_view iconName;
    };
    Row const rows[] {
        { GoogleApp::mail, "mail", "Mail", "https://mail.google.com/", "tarn-mail-symbolic" },
        { GoogleApp::calendar, "calendar", "Calendar", "https://calendar.google.com/", "tarn-calendar-symbolic" },
        { GoogleApp::drive, "drive", "Drive", "https://drive.google.com/", "tarn-drive-symbolic" },
        { GoogleApp::gemini, "gemini", "Gemini", "https://gemini.google.com/", "tarn-gemini-symbolic" },
        { GoogleApp::keep, "keep", "Keep", "https://keep.google.com/", "tarn-keep-symbolic" },
        { GoogleApp::tasks, "tasks", "Tasks", "https://tasks.google.com/", "tarn-tasks-symbolic" },
        { GoogleApp::contacts, "contacts", "Contacts", "https://contacts.google.com/", "tarn-contacts-symbolic" },
    };
    ASSERT_EQ(std::size(rows), GoogleApp::allCases.size());
    for (int position = 0; position < 7; ++position) {
        auto const& row = rows[position];
        EXPECT_EQ(row.app, GoogleApp::allCases[position]);
        EXPECT_EQ(row.app.position(), position);
        EXPECT_EQ(row.app.shortcutNumber(), position + 1);
        EXPECT_EQ(row.app.rawValue(), row.rawValue);
        EXPECT_EQ(row.app.title(), row.title);
        EXPECT_EQ(row.app.url().string(), row.url);
        EXPECT_EQ(row.app.iconName(), row.iconName);
        EXPECT_EQ(GoogleApp::fromRawValue(row.rawValue), row.app);
    }
}

TEST(GoogleAppTest, RawValuesMatchAsAWhole)
{
    for (auto const text : { "", "Mail", " mail", "mail ", "MAIL", "mai", "mails", "Contacts", "other" })
        EXPECT_EQ(GoogleApp::fromRawValue(text), std::nullopt) << text;
    EXPECT_EQ(GoogleApp::fromRawValue(std::string_view("mail\0", 5)), std::nullopt);
}

TEST(GoogleAppTest, IsAKeyOfCollections)
{
    std::set<GoogleApp> const ordered { GoogleApp::contacts, GoogleApp::mail, GoogleApp::keep, GoogleApp::mail };
    EXPECT_TRUE(std::ranges::equal(
        ordered, std::array<GoogleApp, 3> { GoogleApp::mail, GoogleApp::keep, GoogleApp::contacts }));

    std::unordered_map<GoogleApp, double> zoom;
    for (auto const app : GoogleApp::allCases)
        zoom[app] = app.position();
    EXPECT_EQ(zoom.size(), 7u);
    EXPECT_EQ(zoom.at(GoogleApp::tasks), 5);
}

}

}
