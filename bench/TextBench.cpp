#include "Apps/Mailto.h"
#include "Bridge/UnreadCount.h"

#include <benchmark/benchmark.h>

namespace tarn {

namespace {

void composeFromMailto(benchmark::State& state)
{
    auto const body = std::string(state.range(0), 'x');
    auto const url = Url::parse(
        "mailto:one@news.example,two+tag@news.example?subject=Hi%20there&cc=three@news.example&body=" + body)
                         .value();
    for (auto _ : state)
        benchmark::DoNotOptimize(Mailto::composeURL(url));
    state.SetBytesProcessed(state.iterations() * url.string().size());
}
BENCHMARK(composeFromMailto)->Arg(100)->Arg(100 << 10);

void readUnreadCount(benchmark::State& state)
{
    std::string_view const title { "Inbox (1,234) - someone@news.example - Gmail" };
    for (auto _ : state)
        benchmark::DoNotOptimize(UnreadCount::parse(title));
}
BENCHMARK(readUnreadCount);

void readHostileTitle(benchmark::State& state)
{
    std::string title;
    while (title.size() < static_cast<std::size_t>(state.range(0)))
        title += "(1,\xD9\xA3";
    for (auto _ : state)
        benchmark::DoNotOptimize(UnreadCount::parse(title));
    state.SetBytesProcessed(state.iterations() * title.size());
}
BENCHMARK(readHostileTitle)->Arg(1 << 10)->Arg(1 << 20);

}

}
