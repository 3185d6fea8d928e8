// The input: where a link leads and where it stands, on two lines.

#include "Apps/LinkPolicy.h"
#include "Fuzz.h"
#include "Support/Cases.h"

namespace tarn::fuzz {
namespace {

void checkUrl(Url const& url)
{
    auto const again = Url::parse(url.string());
    require(again && again->string() == url.string(), "a serialised URL is read as itself");
    require(again->host() == url.host() && again->path() == url.path() && again->query() == url.query(),
        "and has the same parts");
    require(!url.scheme().empty(), "a URL has a scheme");
    for (char const character : url.string())
        require(character >= 0x20 && character < 0x7F, "a serialised URL is printable ASCII");
}

void checkRedirect(Url const& url)
{
    auto const resolved = LinkPolicy::resolvingGoogleRedirect(url);
    if (resolved == url)
        return;
    auto const target = url.firstQueryValue("q");
    require(target && Url::parse(*target) == resolved, "a redirect is resolved once, to what it names");
}

void checkDecision(LinkPolicy::Decision const& decision, std::optional<Url> const& to)
{
    std::visit(Cases {
                   [&](LinkPolicy::Allow const&) {
                       require(!to || LinkPolicy::isWebScheme(*to), "only web schemes stay in the view");
                   },
                   [&](LinkPolicy::Ask const& ask) {
                       require(LinkPolicy::isGoogleApp(ask.url), "the user is asked about Google apps only");
                   },
                   [&](LinkPolicy::OpenExternally const& open) {
                       require(open.url == *to || open.url == LinkPolicy::resolvingGoogleRedirect(*to),
                           "what leaves is the link or what it leads to");
                   },
               },
        decision);
}

}
}

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    auto const input = fuzz::text(data, size);
    auto const line = std::min(input.find('\n'), input.size());
    auto const to = Url::parse(input.substr(0, line));
    auto const from = Url::parse(input.substr(std::min(line + 1, input.size())));

    fuzz::checkDecision(LinkPolicy::popup(to, from), to);
    if (!to)
        return 0;
    fuzz::checkUrl(*to);
    fuzz::checkRedirect(*to);
    fuzz::checkDecision(LinkPolicy::navigation(*to, from, LinkPolicy::LinkActivated::yes), to);
    auto const untouched = LinkPolicy::navigation(*to, from, LinkPolicy::LinkActivated::no);
    fuzz::checkDecision(untouched, to);
    fuzz::require(std::holds_alternative<LinkPolicy::Allow>(untouched) == LinkPolicy::isWebScheme(*to),
        "what nobody clicked stays, unless it is no web page");
    fuzz::require(!LinkPolicy::isGoogleApp(*to) || LinkPolicy::isInternal(*to), "a Google app is internal");
    return 0;
}
