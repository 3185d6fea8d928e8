#include "Support/Uuid.h"

#include <gtest/gtest.h>

namespace tarn {

namespace {

TEST(UuidTest, ReadsTheCanonicalFormInEitherCase)
{
    auto const uuid = Uuid::parse("0123abcd-4567-89EF-aB01-23456789cdef");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->string(), "0123ABCD-4567-89EF-AB01-23456789CDEF");
    for (auto const text : { "", "0123abcd-4567-89ef-ab01-23456789cde", "0123abcd-4567-89ef-ab01-23456789cdef0",
             "0123abcd_4567-89ef-ab01-23456789cdef", "0123abcg-4567-89ef-ab01-23456789cdef" })
        EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;

    // Random ones are of version 4.
    auto const random = Uuid::random().string();
    EXPECT_EQ(random[14], '4');
    EXPECT_NE(std::string_view("89AB").find(random[19]), std::string_view::npos) << random;
    EXPECT_NE(Uuid::random(), Uuid::random());
}

}

}
