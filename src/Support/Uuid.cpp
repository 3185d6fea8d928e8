#include "Support/Uuid.h"

#include <glib.h>

#include <charconv>
#include <memory>

namespace tarn {

namespace {

constexpr std::size_t canonicalLength { 36 };

bool isHyphenPosition(std::size_t position)
{
    return position == 8 || position == 13 || position == 18 || position == 23;
}

}

Uuid Uuid::random()
{
    std::unique_ptr<char, decltype(&g_free)> const text { g_uuid_string_random(), g_free };
    return parse(text.get()).value();
}

std::optional<Uuid> Uuid::parse(std::string_view text)
{
    if (text.size() != canonicalLength)
        return std::nullopt;
    Uuid uuid;
    auto byte = uuid.m_bytes.begin();
    for (std::size_t position = 0; position < text.size();) {
        if (isHyphenPosition(position)) {
            if (text[position] != '-')
                return std::nullopt;
            ++position;
            continue;
        }
        auto const* const digits = text.data() + position;
        if (std::from_chars(digits, digits + 2, *byte, 16).ptr != digits + 2)
            return std::nullopt;
        ++byte;
        position += 2;
    }
    return uuid;
}

std::string Uuid::string() const
{
    static constexpr std::string_view digits { "0123456789ABCDEF" };
    std::string text;
    text.reserve(canonicalLength);
    for (auto const byte : m_bytes) {
        if (isHyphenPosition(text.size()))
            text += '-';
        text += { digits[byte >> 4], digits[byte & 15] };
    }
    return text;
}

}
