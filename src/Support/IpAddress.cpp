#include "Support/IpAddress.h"

#include "Support/Ascii.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace tarn {

namespace {

// Up to this and no further: larger numbers are all the same, too large.
constexpr std::uint64_t tooLarge { std::uint64_t { 1 } << 32 };

std::optional<std::uint64_t> parseIpv4Number(std::string_view text)
{
    if (text.empty())
        return std::nullopt;
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
    } else if (text.size() > 1 && text.front() == '0') {
        text.remove_prefix(1);
        base = 8;
    }
    if (text.empty())
        return 0;
    std::uint64_t number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument)
        return std::nullopt;
    return error == std::errc::result_out_of_range ? tooLarge : std::min(number, tooLarge);
}

using Pieces = std::array<std::uint16_t, 8>;

class Ipv6Parser {
public:
    explicit Ipv6Parser(std::string_view text)
        : m_rest(text)
    {
    }

    std::optional<Pieces> parse();

private:
    std::uint16_t takeHexadecimal();
    bool parseIpv4Tail();

    std::string_view m_rest;
    Pieces m_pieces {};
    std::size_t m_count { 0 };
};

std::uint16_t Ipv6Parser::takeHexadecimal()
{
    std::uint16_t value = 0;
    auto const* const begin = m_rest.data();
    auto const result = std::from_chars(begin, begin + std::min<std::size_t>(m_rest.size(), 4), value, 16);
    m_rest.remove_prefix(result.ptr - begin);
    return value;
}

// Four decimal numbers without leading zeros, in the place of the last two pieces.
bool Ipv6Parser::parseIpv4Tail()
{
    if (m_count > 6)
        return false;
    std::uint32_t address = 0;
    for (int part = 0; part < 4; ++part) {
        if (part > 0) {
            if (!m_rest.starts_with('.'))
                return false;
            m_rest.remove_prefix(1);
        }
        auto const length = std::min<std::size_t>(std::ranges::find_if_not(m_rest, isAsciiDigit) - m_rest.begin(), 4);
        auto const digits = m_rest.substr(0, length);
        unsigned number = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (digits.empty() || (digits.size() > 1 && digits.front() == '0') || number > 255)
            return false;
        address = address << 8 | number;
        m_rest.remove_prefix(length);
    }
    m_pieces[m_count++] = static_cast<std::uint16_t>(address >> 16);
    m_pieces[m_count++] = static_cast<std::uint16_t>(address);
    return m_rest.empty();
}

std::optional<Pieces> Ipv6Parser::parse()
{
    // The zeros that "::" stands for end here; it stands for one at least.
    std::optional<std::size_t> compressedAt;
    if (m_rest.starts_with(':')) {
        if (!m_rest.starts_with("::"))
            return std::nullopt;
        m_rest.remove_prefix(2);
        compressedAt = ++m_count;
    }
    while (!m_rest.empty()) {
        if (m_count == m_pieces.size())
            return std::nullopt;
        if (m_rest.front() == ':') {
            if (compressedAt)
                return std::nullopt;
            m_rest.remove_prefix(1);
            compressedAt = ++m_count;
            continue;
        }
        auto const piece = m_rest;
        auto const value = takeHexadecimal();
        if (m_rest.starts_with('.')) {
            m_rest = piece;
            if (!parseIpv4Tail())
                return std::nullopt;
            break;
        }
        if (!m_rest.empty()) {
            // A colon, and not as the very last character.
            if (m_rest.front() != ':' || m_rest.size() == 1)
                return std::nullopt;
            m_rest.remove_prefix(1);
        }
        m_pieces[m_count++] = value;
    }
    if (!compressedAt)
        return m_count == m_pieces.size() ? std::optional(m_pieces) : std::nullopt;
    std::shift_right(
        m_pieces.begin() + *compressedAt, m_pieces.end(), static_cast<std::ptrdiff_t>(m_pieces.size() - m_count));
    std::fill_n(m_pieces.begin() + *compressedAt, m_pieces.size() - m_count, std::uint16_t { 0 });
    return m_pieces;
}

struct Run {
    std::size_t start { 0 };
    std::size_t length { 0 };
};

// The first longest run of two or more zero pieces; length 0 when there is none.
Run longestZeroRun(Pieces const& pieces)
{
    Run longest;
    for (std::size_t start = 0; start < pieces.size();) {
        auto const* const end
            = std::find_if(pieces.begin() + start, pieces.end(), [](auto piece) { return piece != 0; });
        auto const length = static_cast<std::size_t>(end - pieces.begin()) - start;
        if (length > std::max<std::size_t>(longest.length, 1))
            longest = { start, length };
        start += length + 1;
    }
    return longest;
}

}

bool endsInNumber(std::string_view host)
{
    if (host.ends_with('.'))
        host.remove_suffix(1);
    auto const last = host.substr(host.rfind('.') + 1);
    if (last.empty())
        return false;
    return std::ranges::all_of(last, isAsciiDigit) || parseIpv4Number(last);
}

std::optional<std::string> canonicalIpv4(std::string_view text)
{
    if (text.ends_with('.'))
        text.remove_suffix(1);
    std::uint64_t address = 0;
    for (int count = 1; count <= 4; ++count) {
        auto const end = text.find('.');
        auto const number = parseIpv4Number(text.substr(0, end));
        if (!number)
            return std::nullopt;
        if (end == text.npos) {
            // The last number fills all the bytes that are left.
            auto const bits = 8 * (5 - count);
            if (*number >= std::uint64_t { 1 } << bits)
                return std::nullopt;
            address = address << bits | *number;
            std::string canonical;
            for (int shift = 24; shift >= 0; shift -= 8)
                canonical += std::to_string(address >> shift & 0xFF) + (shift > 0 ? "." : "");
            return canonical;
        }
        if (*number > 255)
            return std::nullopt;
        address = address << 8 | *number;
        text.remove_prefix(end + 1);
    }
    return std::nullopt;
}

std::optional<std::string> canonicalIpv6(std::string_view text)
{
    auto const pieces = Ipv6Parser(text).parse();
    if (!pieces)
        return std::nullopt;
    auto const zeros = longestZeroRun(*pieces);
    std::string canonical;
    for (std::size_t index = 0; index < pieces->size(); ++index) {
        if (zeros.length > 0 && index == zeros.start) {
            canonical += index == 0 ? "::" : ":";
            index += zeros.length - 1;
            continue;
        }
        char digits[4];
        auto const result = std::to_chars(digits, digits + sizeof digits, (*pieces)[index], 16);
        canonical.append(digits, result.ptr);
        if (index + 1 < pieces->size())
            canonical += ':';
    }
    return canonical;
}

}
