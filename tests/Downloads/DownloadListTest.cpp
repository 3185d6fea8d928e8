#include "Downloads/DownloadList.h"

#include <gmock/gmock.h>

namespace tarn {
namespace {

using State = DownloadItem::State;
using testing::ElementsAre;

DownloadItem item(std::uint64_t id, State state, platform::DownloadProgress progress = {})
{
    return { .id = id, .state = state, .file = "/d/" + std::to_string(id), .progress = progress };
}

std::vector<std::uint64_t> ids(DownloadList const& list)
{
    std::vector<std::uint64_t> ids;
    for (auto const& one : list.items())
        ids.push_back(one.id);
    return ids;
}

TEST(DownloadListTest, AllThatRunsIsOneBar)
{
    struct Case {
        std::vector<DownloadItem> items;
        std::optional<double> fraction;
    };
    std::int64_t const huge = INT64_MAX;
    for (auto const& [items, fraction] : {
             Case { {}, std::nullopt },
             Case { { item(1, State::running, { 100, 100 }), item(2, State::running, { 100, 300 }) }, 0.5 },
             Case { { item(1, State::finished, { 100, 100 }), item(2, State::running, { 100, 400 }) }, 0.25 },
             Case { { item(1, State::running, { 500, -1 }) }, std::nullopt },
             Case { { item(1, State::running, { 50, -1 }), item(2, State::running, { 100, 300 }) }, 0.5 },
             // More than was announced.
             Case { { item(1, State::running, { 500, -1 }), item(2, State::running, { 1, 100 }) }, 1.0 },
             Case { { item(1, State::running, { huge, huge }), item(2, State::running, { 0, huge }) }, 0.5 },
             Case { { item(1, State::running, { 0, 0 }) }, std::nullopt },
         }) {
        DownloadList list;
        for (auto const& one : items)
            list.set(one);
        EXPECT_EQ(list.fraction(), fraction);
    }
}

TEST(DownloadListTest, KeepsTheNewestOfWhatHasFinished)
{
    DownloadList list;
    int changes = 0;
    list.onChange = [&] { ++changes; };
    list.set(item(1, State::running));
    for (std::uint64_t id = 2; id <= 13; ++id)
        list.set(item(id, State::finished));
    EXPECT_THAT(ids(list), ElementsAre(13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 1)) << "the one that runs stays";
    list.clearFinished();
    EXPECT_THAT(ids(list), ElementsAre(1));
    list.clearFinished();
    EXPECT_EQ(changes, 14) << "clearing nothing is no change";
}

}
}
