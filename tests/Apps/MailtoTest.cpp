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
    struct Case {
        std::string_view mailto;
        // Behind the empty compose page.
        std::string_view filledIn;
    };
    static constexpr Case cases[] {
        { "mailto:", "" },
        { "mailto:?", "" },
        { "mailto:a@b.example", "&to=a@b.example" },
        { "MailTo:a@b.example", "&to=a@b.example" },
        { "mailto:a@b.example,c@d.example?subject=Hi%20there", "&to=a@b.example,c@d.example&su=Hi%20there" },
        { "mailto:a+tag@b.example?subject=a+b", "&to=a%2Btag@b.example&su=a%2Bb" },
        { "mailto:?to=a@b.example&attach=/etc/passwd&in-reply-to=x&subject=s", "&su=s" },
        { "mailto:?Subject=1&SUBJECT=2&%73ubject=3", "&su=1&su=2&su=3" },
        { "mailto:?bcc=x&cc=1&body=b&cc=2", "&bcc=x&cc=1&body=b&cc=2" },
        { "mailto:?body=&cc&subject=s", "&su=s" },
        { "mailto:?subject=a=b", "&su=a%3Db" },
        // Nothing that is carried over becomes a parameter of the page.
        { "mailto:a%26su=x%23y@b.example?body=1%26view=2%0D%0A%23",
            "&to=a%26su%3Dx%23y@b.example&body=1%26view%3D2%0D%0A%23" },
        { "mailto:a@b.example?subject=x#&body=y", "&to=a@b.example&su=x" },
        // Recipients are decoded twice where that is possible, headers once.
        { "mailto:a%2540b.example?subject=100%2525", "&to=a@b.example&su=100%2525" },
        { "mailto:100%25@b.example", "&to=100%25@b.example" },
        { "mailto:a%FF@b.example?body=%FF", "&to=a%25FF@b.example&body=%25FF" },
        { "mailto:\xC3\xA9@b.example?subject=\xE2\x82\xAC 5", "&to=%C3%A9@b.example&su=%E2%82%AC%205" },
    };
    for (auto const& [mailto, filledIn] : cases) {
        EXPECT_EQ(composed(mailto), "https://mail.google.com/mail/?view=cm&fs=1" + std::string(filledIn)) << mailto;
    }
    EXPECT_EQ(Mailto::newEmail().string(), composed("mailto:"));
}

TEST(MailtoTest, TakesOnlyMailto)
{
    for (auto const url : { "https://mail.google.com/?subject=x", "mailtox:a@b.example", "tel:1" })
        EXPECT_EQ(composed(url), std::nullopt) << url;
}

}

}
