#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarn {

// The ASCII characters that a part of a URL percent-encodes. Everything beyond ASCII is always encoded.
class PercentEncodeSet {
public:
    constexpr PercentEncodeSet(PercentEncodeSet const& base, std::string_view more)
        : PercentEncodeSet(base)
    {
        for (auto const character : more)
            insert(static_cast<unsigned char>(character));
    }

    static constexpr PercentEncodeSet c0Controls()
    {
        PercentEncodeSet set;
        for (unsigned character = 0; character < 0x20; ++character)
            set.insert(character);
        set.insert(0x7F);
        return set;
    }

    constexpr bool contains(char character) const
    {
        auto const code = static_cast<unsigned char>(character);
        return code >= 0x80 || (m_bits[code / 64] >> (code % 64) & 1) != 0;
    }

private:
    constexpr PercentEncodeSet() = default;
    constexpr void insert(unsigned code) { m_bits[code / 64] |= std::uint64_t { 1 } << (code % 64); }

    std::uint64_t m_bits[2] {};
};

// The sets of the URL standard.
inline constexpr auto c0ControlSet = PercentEncodeSet::c0Controls();
inline constexpr PercentEncodeSet fragmentSet { c0ControlSet, " \"<>`" };
inline constexpr PercentEncodeSet querySet { c0ControlSet, " \"#<>" };
inline constexpr PercentEncodeSet specialQuerySet { querySet, "'" };
inline constexpr PercentEncodeSet pathSet { querySet, "?^`{}" };
inline constexpr PercentEncodeSet userInfoSet { pathSet, "/:;=@[\\]|" };

// Appends UTF-8 text; ill-formed parts become U+FFFD.
void appendPercentEncoded(std::string& output, std::string_view text, PercentEncodeSet const&);

// A percent sign without two hexadecimal digits behind it.
bool hasBrokenEscape(std::string_view);

// Bytes, not necessarily UTF-8; broken escapes stay as they are.
std::string percentDecodeLeniently(std::string_view);

}
