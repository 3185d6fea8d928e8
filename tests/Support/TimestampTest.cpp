#include "Support/Timestamp.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

using namespace std::chrono_literals;

constexpr Timestamp epoch {};

TEST(Timestamp, IsWrittenInWholeSecondsAndReadBack)
{
    EXPECT_EQ(toIso8601(epoch + 1740821400s + 999999us), "2025-03-01T09:30:00Z");
    EXPECT_EQ(toIso8601(epoch - 1ms), "1969-12-31T23:59:59Z");
    for (auto const time : { epoch, epoch - 1ms, Timestamp::min() + 2s, Timestamp::max() - 2s })
        EXPECT_EQ(fromIso8601(toIso8601(time)), std::chrono::floor<std::chrono::seconds>(time));
}

TEST(Timestamp, ReadsWhateverTheStandardAllowsAndNothingElse)
{
    std::pair<std::string_view, std::optional<Timestamp>> const rows[] {
        { "2025-03-01T04:00:00-05:30", epoch + 1740821400s },
        { "20250301T093000Z", epoch + 1740821400s },
        { "2025-03-01T09:30:00.25Z", epoch + 1740821400s + 250ms },
        { "2025-03-01T09:30:00", std::nullopt },
        { "2025-02-29T09:30:00Z", std::nullopt },
        { "2025-03-01T09:30:00Z and more", std::nullopt },
        { std::string_view("2025-03-01T09:30:00Z\0", 21), std::nullopt },
        { "0001-01-01T00:00:00Z", std::nullopt },
        { "9999-12-31T23:59:59Z", std::nullopt },
        { "", std::nullopt },
    };
    for (auto const& [text, time] : rows)
        EXPECT_EQ(fromIso8601(text), time) << text;
}

}
}
