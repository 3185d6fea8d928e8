#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tarn {

// Character classes that do not depend on the locale. Bytes beyond ASCII belong to none and are never changed.

constexpr bool isAsciiDigit(char character)
{
    return character >= '0' && character <= '9';
}

constexpr char toAsciiLower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
}

constexpr bool isAsciiLetter(char character)
{
    auto const lower = toAsciiLower(character);
    return lower >= 'a' && lower <= 'z';
}

constexpr bool isAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

inline std::string toAsciiLower(std::string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char character) { return toAsciiLower(character); });
    return lower;
}

}
