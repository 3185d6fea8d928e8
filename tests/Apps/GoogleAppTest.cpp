#include "Apps/GoogleApp.h"

#include <gtest/gtest.h>

#include <unordered_map>

namespace tarn {

namespace {

TEST(GoogleAppTest, EveryAppIsOneRowOfTheCatalogue)
{
    std::unordered_map<GoogleApp, int> numbers;
    for (auto const app : GoogleApp::allCases) {
        std::string const name(app.rawValue());
        EXPECT_EQ(app, GoogleApp::allCases[app.position()]);
        EXPECT_EQ(GoogleApp::fromRawValue(name), app);
        EXPECT_EQ(app.url().string(), "https://" + name + ".google.com/");
        EXPECT_EQ(app.iconName(), "tarn-" + name + "-symbolic");
        EXPECT_EQ(app.title().substr(1), name.substr(1));
        numbers[app] = app.shortcutNumber();
    }
    EXPECT_EQ(numbers.size(), 7u);
    EXPECT_EQ(numbers.at(GoogleApp::mail), 1);
    EXPECT_EQ(numbers.at(GoogleApp::contacts), 7);

    for (std::string const text : { "", "Mail", "mail ", "mai", "other" })
        EXPECT_EQ(GoogleApp::fromRawValue(text), std::nullopt) << text;
}

}

}
