#include "Support/Uuid.h"

#include <sys/random.h>

#include <cerrno>
#include <charconv>
#include <system_error>

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
    // From the system, not from a generator of the process: some identifiers are secrets, and a fork must not repeat
    // them.
    Uuid uuid;
    if (getrandom(uuid.m_bytes.data(), uuid.m_bytes.size(), 0) != static_cast<ssize_t>(uuid.m_bytes.size()))
        throw std::system_error(errno, std::generic_category(), "getrandom");
    uuid.m_bytes[6] = (uuid.m_bytes[6] & 0x0F) | 0x40;
    uuid.m_bytes[8] = (uuid.m_bytes[8] & 0x3F) | 0x80;
    return uuid;
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
