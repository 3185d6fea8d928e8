#include "Support/Reply.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tarn {
namespace {

TEST(ReplyTest, AnswersExactlyOnce)
{
    std::vector<std::string> answers;
    auto const ask = [&] { return Reply<std::string>([&](std::string text) { answers.push_back(text); }, "safe"); };
    {
        auto answered = ask();
        std::move(answered)("yes");
        std::move(answered)("again");
        auto const dropped = ask();
        auto moved = ask();
        auto holder = std::move(moved);
        std::move(moved)("by the empty one");
        holder = ask();
        EXPECT_THAT(answers, testing::ElementsAre("yes", "safe")) << "what is replaced has been dropped";
    }
    EXPECT_THAT(answers, testing::ElementsAre("yes", "safe", "safe", "safe"));
}

}
}
