// Does pieces of the core's work and says how many allocations each took: "name rounds allocations", a line each. Under
// callgrind the rounds of each are a dump of its own. What they may take stands in budgets.py.

#include "Apps/LinkPolicy.h"
#include "Apps/Mailto.h"
#include "Bridge/BridgeScripts.h"
#include "Bridge/UnreadCount.h"
#include "Budgets/Counting.h"
#include "Fakes/NotifyingPage.h"
#include "MainWindow/ProfileMenu.h"
#include "Support/TemporaryFolder.h"

#ifdef TARN_VALGRIND
#include <valgrind/callgrind.h>
#endif

#include <cstdio>
#include <string>

namespace tarn {
namespace {

constexpr int rounds = 10;

// So that no work is left out because nobody looks at what it gives.
std::size_t volatile seen = 0;

template <typename Work> void measure(std::string const& name, Work const& work)
{
    // What is made once and kept is not counted.
    work();
    auto const before = test::allocations();
#ifdef TARN_VALGRIND
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
#endif
    for (int round = 0; round < rounds; ++round)
        work();
    auto const taken = test::allocations() - before;
#ifdef TARN_VALGRIND
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
#endif
    std::printf("%s %d %zu\n", name.c_str(), rounds, taken);
}

std::string repeated(std::string_view part, std::size_t length)
{
    std::string text;
    while (text.size() < length)
        text += part;
    return text;
}

void decideLinks()
{
    constexpr std::pair<char const*, char const*> links[] {
        { "own-link", "https://mail.google.com/mail/u/0/#inbox/FMfcgzQcqHZtPLLrzbXkDvqFJnJqSTWb" },
        { "link-into-another-app", "https://calendar.google.com/calendar/u/0/r/eventedit?text=Planning" },
        { "foreign-link", "https://news.example/2025/03/01/an-article-with-a-long-title?utm_source=newsletter" },
        { "redirected-link",
            "https://www.google.com/url?q=https://news.example/2025/03/01/an-article%3Fid%3D1%26ref%3Dmail&sa=D" },
    };
    auto const from = Url::parse("https://mail.google.com/mail/u/0/#inbox");
    for (auto const& [name, text] : links) {
        auto const to = Url::parse(text).value();
        measure(name, [&] {
            seen = seen + LinkPolicy::navigation(to, from, LinkPolicy::LinkActivated::yes).index();
            seen = seen + LinkPolicy::popup(to, from).index();
        });
        measure("parsing-" + std::string(name), [&, text = text] { seen = seen + Url::parse(text)->string().size(); });
    }
    for (std::size_t const size : { 2'000U, 20'000U }) {
        auto const query = "https://news.example/?" + repeated("q=%20&", size);
        measure("parsing-query-" + std::to_string(size), [&] { seen = seen + Url::parse(query)->string().size(); });
    }
}

void readTexts()
{
    measure("title", [] { seen = seen + UnreadCount::parse("Inbox (1,234) - someone@news.example - Mail"); });
    for (std::size_t const size : { 2'000U, 20'000U }) {
        auto const end = "-" + std::to_string(size);
        auto const title = repeated("(1,\xD9\xA3", size);
        measure("hostile-title" + end, [&] { seen = seen + UnreadCount::parse(title); });
        auto const mailto = Url::parse("mailto:one@news.example?body=" + repeated("x%0A", size)).value();
        measure("mailto" + end, [&] { seen = seen + Mailto::composeURL(mailto)->string().size(); });
        auto const text = repeated("</script>\n", size);
        measure("script-literal" + end, [&] { seen = seen + BridgeScripts::jsString(text).size(); });
    }
}

void takeMessages()
{
    test::NotifyingPage page;
    measure("notification-shown-and-closed", [&] {
        page.post(R"({"type":"show","id":"n1","title":"Ines Okafor","body":"The 14th?","tag":"mail"})");
        page.center.completeAdds();
        page.post(R"({"type":"close","id":"n1"})");
    });
    auto const nested = repeated("[", 10'000);
    measure("message-nested-deep", [&] { page.post(nested); });
}

void useProfiles()
{
    ProfileStore::Environment const environment {
        .now = [] { return Timestamp {}; }, .makeUuid = &Uuid::random, .log = [](std::string const&) {}
    };
    for (int const count : { 1, 10, 100 }) {
        TemporaryFolder const folder;
        ProfileStore store(folder.path(), environment);
        std::vector<Profile> profiles;
        for (int number = 1; number <= count; ++number) {
            auto const id = Uuid::random();
            profiles.push_back({ id, "Profile " + std::to_string(number), id.string() + ".png",
                { GoogleApp::allCases.begin(), GoogleApp::allCases.end() }, { { GoogleApp::mail, 1.2 } }, {} });
        }
        store.replaceAll(profiles, profiles.back().id);
        auto const end = "-" + std::to_string(count);
        measure(
            "profiles-loaded" + end, [&] { seen = seen + ProfileStore(folder.path(), environment).profiles().size(); });
        measure("profile-menu" + end, [&] { seen = seen + ProfileMenu::make(store, nullptr).entries.size(); });
    }
}

}
}

int main()
{
    tarn::decideLinks();
    tarn::readTexts();
    tarn::takeMessages();
    tarn::useProfiles();
}
