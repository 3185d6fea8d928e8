// The input: what a page posts, in JSON as the page chose it. The first byte says where the page is from.

#include "Bridge/BridgeScripts.h"
#include "Bridge/NotificationText.h"
#include "Fakes/NotifyingPage.h"
#include "Fuzz.h"
#include "Support/Unicode.h"

#include <nlohmann/json.hpp>

#include <array>

namespace tarn::fuzz {
namespace {

std::size_t lengthOf(std::string_view text)
{
    std::size_t count = 0;
    for (std::size_t position = 0; position < text.size(); ++count)
        nextCharacter(text, position);
    return count;
}

void checkQuoting(std::string_view text)
{
    auto const literal = BridgeScripts::jsString(text);
    for (char const character : literal)
        require(character >= 0x20 && character < 0x7F, "a literal is ASCII on one line");
    require(literal.find("</") == std::string::npos, "a literal ends no script element");
    auto const read = nlohmann::json::parse(literal, nullptr, false);
    require(read.is_string(), "a literal is one string");
    require(BridgeScripts::jsString(read.get<std::string>()) == literal, "which is the text");
}

}
}

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    static constexpr std::array<char const*, 4> origins { "https://mail.google.com", "https://evil.example", "null",
        "https://mail.google.com.evil.example:8443" };
    if (size == 0)
        return 0;
    auto const origin = std::string(origins[data[0] % origins.size()]);
    std::string const body(fuzz::text(data + 1, size - 1));
    fuzz::checkQuoting(body);

    test::NotifyingPage page;
    page.post(body, platform::FrameKind::sub, origin);
    page.post(body, platform::FrameKind::sub, origin);
    page.center.completeAdds();

    fuzz::require(page.center.shown.size() <= 1, "the same notification is shown once");
    for (auto const& shown : page.center.shown) {
        fuzz::require(fuzz::lengthOf(shown.title) <= NotificationText::longestTitle, "a title is bounded");
        fuzz::require(fuzz::lengthOf(shown.body) <= NotificationText::longestBody + 80, "a body is bounded");
        fuzz::require(origin == origins[0] || shown.body.ends_with(origin == "null" ? "unknown origin" : origin),
            "a foreign page is named in the last line");
        page.center.click(shown);
    }
    fuzz::require(
        page.workspace.revealed.empty() && page.workspace.opened.empty(), "no page reaches files or programs");
    return 0;
}
