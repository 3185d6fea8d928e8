#include "Bridge/UnreadCount.h"

#include <gtest/gtest.h>

namespace tarn {

namespace {

using namespace std::string_view_literals;

TEST(UnreadCountTest, ReadsTheFirstNumberInParentheses)
{
    struct Case {
        std::string_view title;
        std::int64_t count;
    };
    static constexpr Case cases[] {
        { "", 0 },
        { "Inbox - a@b.example - Gmail", 0 },
        { "Inbox (3) - a@b.example - Gmail", 3 },
        { "Inbox (x) (5) (6)", 5 },
        { "((7))", 7 },
        { "(1(2)", 2 },
        { "(99+)", 0 },
        { "(99+) (4)", 4 },
        { "(1,234)", 1234 },
        { "(1.234)", 1234 },
        { "(1.5)", 15 },
        { "(12,345,678)", 12345678 },
        { "(1,,..)", 1 },
        { "(,1)", 0 },
        { "(0)", 0 },
        { "(007)", 7 },
        { "( 3)", 0 },
        { "(3 )", 0 },
        { "(-3)", 0 },
        { "(+3)", 0 },
        { "(3", 0 },
        { "3)", 0 },
        { "(", 0 },
        { "()", 0 },
        { "(9223372036854775807)", 9223372036854775807 },
        { "(9223372036854775808)", 0 },
        { "(99999999999999999999999999) (4)", 0 },
        // Digits of other scripts are digits, and the first number is the one that counts.
        { "(\xD9\xA3) (5)", 0 },
        { "(1\xD9\xA3) (5)", 0 },
        { "(\xEF\xBC\x95) (5)", 0 },
        // Numbers that are no decimal digits.
        { "(\xC2\xB2) (5)", 5 },
        { "(\xE2\x85\xA7) (5)", 5 },
        // Ill-formed.
        { "(\xD9) (5)", 5 },
        { "(1\xFF) (5)", 5 },
        { "\xFF(8)\xE2\x82", 8 },
        { "(1\0) (2)"sv, 2 },
    };
    for (auto const& [title, count] : cases)
        EXPECT_EQ(UnreadCount::parse(title), count) << title;
    EXPECT_EQ(UnreadCount::parse(std::nullopt), 0);
}

TEST(UnreadCountTest, LongTitlesAreReadOnce)
{
    std::string const size(100'000, '1');
    EXPECT_EQ(UnreadCount::parse('(' + size + ')'), 0);
    EXPECT_EQ(UnreadCount::parse('(' + std::string(100'000, '0') + "1)"), 1);
    EXPECT_EQ(UnreadCount::parse(std::string(100'000, '(') + "2)"), 2);
    std::string open;
    for (int i = 0; i < 100'000; ++i)
        open += "(1,";
    EXPECT_EQ(UnreadCount::parse(open + ')'), 1);
}

}

}
