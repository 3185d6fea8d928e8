#include "Apps/Mailto.h"
#include "Fuzz.h"

#include <algorithm>
#include <array>

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    auto const url = Url::parse(fuzz::text(data, size));
    if (!url)
        return 0;
    auto const compose = Mailto::composeURL(*url);
    fuzz::require(compose.has_value() == (url->scheme() == "mailto"), "mailto links, and only those, are translated");
    if (!compose)
        return 0;
    fuzz::require(compose->scheme() == "https" && compose->host() == "mail.google.com" && compose->path() == "/mail/"
            && !compose->fragment(),
        "a link cannot choose where it is composed");
    static constexpr std::array<std::string_view, 7> keys { "view", "fs", "to", "su", "body", "cc", "bcc" };
    auto const items = compose->queryItems();
    fuzz::require(
        items.size() >= 2 && items[0] == Url::QueryItem("view", "cm") && items[1] == Url::QueryItem("fs", "1"),
        "it is the compose page");
    for (std::size_t index = 0; index < items.size(); ++index) {
        fuzz::require(std::ranges::find(keys, items[index].first) != keys.end(), "no other key gets through");
        fuzz::require(
            index < 2 || (items[index].first != "view" && items[index].first != "fs"), "a link cannot say it again");
    }
    return 0;
}
