#include "Bridge/UnreadCount.h"

#include <gtest/gtest.h>

namespace tarn {

namespace {

using namespace std::string_view_literals;

TEST(UnreadCountTest, ReadsTheFirstNumberInParentheses)
{
    std::pair<std::string_view, std::int64_t> const rows[] { { "", 0 }, { "Inbox - a@b.example - Gmail", 0 },
        { "Inbox (3) - a@b.example - Gmail", 3 }, { "Inbox (x) (5) (6)", 5 }, { "(1(2)", 2 }, { "(99+) (4)", 4 },
        { "(1,234.567)", 1234567 }, { "(1,,..)", 1 }, { "(,1)", 0 }, { "( 3)", 0 }, { "(3 )", 0 }, { "(-3)", 0 },
        { "(3", 0 }, { "(", 0 }, { "()", 0 }, { "(9223372036854775807)", 9223372036854775807 },
        { "(9223372036854775808) (4)", 0 },
        // Digits of other scripts are digits, and the first number is the one that counts.
        { "(1\xD9\xA3) (5)", 0 }, { "(\xEF\xBC\x95) (5)", 0 },
        // A number that is no decimal digit, and what is ill-formed.
        { "(\xC2\xB2) (5)", 5 }, { "(1\xFF) (5)", 5 }, { "\xFF(8)\xE2\x82", 8 }, { "(1\0) (2)"sv, 2 } };
    for (auto const& [title, count] : rows)
        EXPECT_EQ(UnreadCount::parse(title), count) << title;
    EXPECT_EQ(UnreadCount::parse(std::nullopt), 0);
}

TEST(UnreadCountTest, LongTitlesAreReadOnce)
{
    EXPECT_EQ(UnreadCount::parse('(' + std::string(100'000, '0') + "1)"), 1);
    std::string open;
    for (int i = 0; i < 100'000; ++i)
        open += "(1,";
    EXPECT_EQ(UnreadCount::parse(open + ')'), 1);
}

}

}
