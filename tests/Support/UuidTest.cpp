#include "Support/Uuid.h"

#include <gtest/gtest.h>

namespace tarn {

namespace {

TEST(UuidTest, ReadsTheCanonicalFormInEitherCase)
{
    auto const uuid = Uuid::parse("0123abcd-4567-89EF-aB01-23456789cdef");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->string(), "0123ABCD-4567-89EF-AB01-23456789CDEF");
    EXPECT_EQ(Uuid::parse(uuid->string()), uuid);

    for (auto const text : { "", "0123abcd456789efab0123456789cdef", "0123abcd-4567-89ef-ab01-23456789cde",
             "0123abcd-4567-89ef-ab01-23456789cdef0", "{123abcd-4567-89ef-ab01-23456789cde}",
             "0123abcd_4567-89ef-ab01-23456789cdef", "0123abcg-4567-89ef-ab01-23456789cdef",
             "0123abcd-4567-89ef-ab01-23456789cd f", "+123abcd-4567-89ef-ab01-23456789cdef" })
        EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;
}

TEST(UuidTest, RandomOnesAreVersion4AndDiffer)
{
    auto const text = Uuid::random().string();
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string_view("89AB").find(text[19]), std::string_view::npos) << text;
    EXPECT_NE(Uuid::random(), Uuid::random());
}

}

}
