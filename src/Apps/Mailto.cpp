#include "Apps/Mailto.h"

#include "Support/Ascii.h"

#include <algorithm>
#include <array>

namespace tarn::Mailto {

namespace {

struct Field {
    std::string_view header;
    // In the query of the compose page.
    std::string_view key;
};

constexpr std::array<Field, 4> fields { {
    { "subject", "su" },
    { "body", "body" },
    { "cc", "cc" },
    { "bcc", "bcc" },
} };

}

Url const& newEmail()
{
    static auto const url = Url::parse("https://mail.google.com/mail/?view=cm&fs=1").value();
    return url;
}

std::optional<Url> composeURL(Url const& url)
{
    if (url.scheme() != "mailto")
        return std::nullopt;
    std::vector<std::pair<std::string, std::string>> items { { "view", "cm" }, { "fs", "1" } };
    // Some senders escape twice.
    auto recipients = url.decodedPath();
    if (auto decoded = percentDecode(recipients))
        recipients = *std::move(decoded);
    if (!recipients.empty())
        items.emplace_back("to", std::move(recipients));
    for (auto& [name, value] : url.queryItems()) {
        auto const* const field = std::ranges::find(fields, toAsciiLower(name), &Field::header);
        if (field != fields.end() && value && !value->empty())
            items.emplace_back(field->key, *std::move(value));
    }
    return newEmail().withQueryItems(items);
}

}
