#include "Apps/Mailto.h"

#include <gtest/gtest.h>

namespace tarn {

namespace {

std::optional<std::string> composed(std::string_view mailto)
{
    auto const url = Mailto::composeURL(Url::parse(mailto).value());
    return url ? std::optional(url->string()) : std::nullopt;
}

TEST(MailtoTest, FillsInTheComposePage)
{
    // What comes behind the empty compose page.
    std::pair<std::string_view, std::string> const rows[] {
        { "mailto:", "" },
        { "mailto:a@b.example", "&to=a@b.example" },
        { "mailto:a@b.example,c@d.example?subject=Hi%20there", "&to=a@b.example,c@d.example&su=Hi%20there" },
        { "mailto:?to=a@b.example&attach=/etc/passwd&in-reply-to=x&subject=s", "&su=s" },
        { "mailto:?bcc=x&Cc=1&SUBJECT=a=b+c&%73ubject=3", "&bcc=x&cc=1&su=a%3Db%2Bc&su=3" },
        { "mailto:?body=&cc&subject=s", "&su=s" },
        // Nothing that is carried over becomes a parameter of the page.
        { "mailto:a%26su=x%23y@b.example?body=1%26view=2%0D%0A%23",
            "&to=a%26su%3Dx%23y@b.example&body=1%26view%3D2%0D%0A%23" },
        { "mailto:a@b.example?subject=x#&body=y", "&to=a@b.example&su=x" },
        // Recipients are decoded twice where that is possible, headers once.
        { "mailto:a%2540b.example?subject=100%2525", "&to=a@b.example&su=100%2525" },
        { "mailto:a%FF@b.example?body=%FF", "&to=a%25FF@b.example&body=%25FF" },
    };
    for (auto const& [mailto, filledIn] : rows)
        EXPECT_EQ(composed(mailto), "https://mail.google.com/mail/?view=cm&fs=1" + filledIn) << mailto;
    EXPECT_EQ(Mailto::newEmail().string(), composed("mailto:"));
    EXPECT_EQ(composed("mailtox:a@b.example"), std::nullopt);
}

}

}
