#include "Bridge/NotificationText.h"

#include "Apps/LinkPolicy.h"
#include "Support/Unicode.h"
#include "Support/Url.h"

#include <algorithm>

namespace tarn::NotificationText {

namespace {

std::string cut(std::string_view text, std::size_t longest)
{
    std::size_t position = 0;
    std::size_t end = 0;
    for (std::size_t count = 0; position < text.size(); ++count) {
        if (count == longest)
            return std::string(text.substr(0, end)) + "…";
        if (count == longest - 1)
            end = position;
        nextCharacter(text, position);
    }
    return std::string(text);
}

// Line ends of any kind, and whatever else moves the cursor.
std::string oneParagraph(std::string text)
{
    std::ranges::replace_if(
        text, [](unsigned char character) { return character < 0x20; }, ' ');
    for (std::string_view const separator : { "\u0085", "\u2028", "\u2029" }) {
        for (auto at = text.find(separator); at != std::string::npos; at = text.find(separator, at))
            text.replace(at, separator.size(), " ");
    }
    return text;
}

bool isGoogleApp(std::optional<Url> const& origin)
{
    return origin && origin->scheme() == "https" && LinkPolicy::isGoogleApp(*origin);
}

}

std::string title(std::string_view text)
{
    return cut(text, longestTitle);
}

std::string body(std::string_view text, std::string_view origin)
{
    auto const url = Url::parse(origin);
    if (isGoogleApp(url))
        return cut(text, longestBody);
    auto result = oneParagraph(cut(text, longestForeignBody));
    if (!result.empty())
        result += '\n';
    return result += url && url->hasHost() ? origin : "unknown origin";
}

}
