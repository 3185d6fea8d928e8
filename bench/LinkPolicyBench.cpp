#include "Apps/LinkPolicy.h"

#include <benchmark/benchmark.h>

namespace tarn {

namespace {

// What pages link to, in about the mixture of a mailbox.
constexpr std::string_view texts[] {
    "https://mail.google.com/mail/u/0/#inbox/FMfcgzQcqHZtPLLrzbXkDvqFJnJqSTWb",
    "https://mail.google.com/mail/u/0/popout?ver=1x2y3z&msg=%23msg-f%3A1800000000000000001",
    "https://calendar.google.com/calendar/u/0/r/eventedit?text=Planning&dates=20250301T093000Z/20250301T100000Z",
    "https://docs.google.com/document/d/1aBcDeFgHiJkLmNoPqRsTuVwXyZ0123456789/edit?usp=sharing#heading=h.x1",
    "https://drive.google.com/drive/folders/1aBcDeFgHiJkLmNoPqRsTuVwXyZ?usp=drive_link",
    "https://accounts.google.com/v3/signin/ServiceLogin?continue=https%3A%2F%2Fmail.google.com%2Fmail%2F&hl=en",
    "https://www.google.com/url?q=https://news.example/2025/03/01/"
    "an-article?id%3D1%26ref%3Dmail&sa=D&ust=17408&usg=AOv",
    "https://login.microsoftonline.com/common/oauth2/v2.0/authorize?client_id=0123&scope=openid",
    "https://company.okta.com/app/google/exk1/sso/saml?SAMLRequest=fVLLTsMwELwj8Q",
    "https://news.example/2025/03/01/an-article-with-a-long-title-about-something?utm_source=newsletter",
    "https://www.shop.example/track?c=3f2c&u=https%3A%2F%2Fwww.shop.example%2Forder%2F123",
    "http://intranet/wiki/Main_Page",
    "https://b\xC3\xBC"
    "cher.example/",
    "https://192.168.0.1:8443/admin",
    "mailto:someone@news.example?subject=Hello",
    "about:blank",
};

std::vector<Url> links()
{
    std::vector<Url> links;
    for (auto const text : texts)
        links.push_back(Url::parse(text).value());
    return links;
}

void parseUrls(benchmark::State& state)
{
    for (auto _ : state) {
        for (auto const text : texts)
            benchmark::DoNotOptimize(Url::parse(text));
    }
    state.SetItemsProcessed(state.iterations() * std::size(texts));
}
BENCHMARK(parseUrls);

void parseLongQuery(benchmark::State& state)
{
    auto const text = "https://news.example/?" + std::string(state.range(0), 'q');
    for (auto _ : state)
        benchmark::DoNotOptimize(Url::parse(text));
    state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(parseLongQuery)->Arg(1 << 10)->Arg(100 << 10)->Arg(10 << 20);

// As many different characters as a host may have before it is refused unread: IDNA is not linear.
void parseSlowestHost(benchmark::State& state)
{
    std::string text { "https://" };
    for (int i = 0; text.size() < 8 * 1024; ++i) {
        auto const character = 0x4E00 + i % 900;
        text += { static_cast<char>(0xE0 | character >> 12), static_cast<char>(0x80 | (character >> 6 & 0x3F)),
            static_cast<char>(0x80 | (character & 0x3F)) };
        if (i % 900 == 899)
            text += '.';
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(Url::parse(text));
}
BENCHMARK(parseSlowestHost)->Unit(benchmark::kMicrosecond);

void decidePopups(benchmark::State& state)
{
    auto const from = Url::parse(texts[0]);
    std::vector<std::optional<Url>> to;
    for (auto& link : links())
        to.emplace_back(std::move(link));
    for (auto _ : state) {
        for (auto const& link : to)
            benchmark::DoNotOptimize(LinkPolicy::popup(link, from));
    }
    state.SetItemsProcessed(state.iterations() * to.size());
}
BENCHMARK(decidePopups);

void decideActivatedLinks(benchmark::State& state)
{
    auto const from = Url::parse(texts[0]);
    auto const to = links();
    for (auto _ : state) {
        for (auto const& link : to)
            benchmark::DoNotOptimize(LinkPolicy::navigation(link, from, LinkPolicy::LinkActivated::yes));
    }
    state.SetItemsProcessed(state.iterations() * to.size());
}
BENCHMARK(decideActivatedLinks);

// One link each: the app's own, another app's, a sign-in step, a redirect, a foreign site.
void decideOneLink(benchmark::State& state)
{
    auto const from = Url::parse(texts[0]);
    auto const to = Url::parse(texts[state.range(0)]).value();
    for (auto _ : state)
        benchmark::DoNotOptimize(LinkPolicy::navigation(to, from, LinkPolicy::LinkActivated::yes));
    state.SetLabel(std::string(to.host()));
}
BENCHMARK(decideOneLink)->Arg(0)->Arg(2)->Arg(5)->Arg(6)->Arg(8)->Arg(9);

}

}
