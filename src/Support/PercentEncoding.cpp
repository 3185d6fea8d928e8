#include "Support/PercentEncoding.h"

#include "Support/Unicode.h"

#include <algorithm>

namespace tarn {

namespace {

void appendEscape(std::string& output, char byte)
{
    static constexpr std::string_view digits { "0123456789ABCDEF" };
    auto const value = static_cast<unsigned char>(byte);
    output += { '%', digits[value >> 4], digits[value & 15] };
}

int hexValue(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    auto const lower = character | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// The byte of the escape at `position`; -1 when it is broken.
int escapedByte(std::string_view text, std::size_t position)
{
    if (text.size() - position < 3)
        return -1;
    auto const high = hexValue(text[position + 1]);
    auto const low = hexValue(text[position + 2]);
    return high < 0 || low < 0 ? -1 : high << 4 | low;
}

}

void appendPercentEncoded(std::string& output, std::string_view text, PercentEncodeSet const& set)
{
    std::size_t plain = 0;
    for (std::size_t position = 0; position < text.size();) {
        auto const character = text[position];
        if (!set.contains(character)) {
            ++position;
            continue;
        }
        output.append(text, plain, position - plain);
        if (static_cast<unsigned char>(character) < 0x80) {
            appendEscape(output, character);
            ++position;
        } else {
            auto const start = position;
            if (nextCharacter(text, position) == replacementCharacter) {
                output += "%EF%BF%BD";
            } else {
                for (auto const byte : text.substr(start, position - start))
                    appendEscape(output, byte);
            }
        }
        plain = position;
    }
    output.append(text, plain);
}

bool hasBrokenEscape(std::string_view text)
{
    for (auto escape = text.find('%'); escape != text.npos; escape = text.find('%', escape + 3)) {
        if (escapedByte(text, escape) < 0)
            return true;
    }
    return false;
}

std::string percentDecodeLeniently(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    std::size_t plain = 0;
    for (auto escape = text.find('%'); escape != text.npos; escape = text.find('%', std::max(plain, escape + 1))) {
        auto const byte = escapedByte(text, escape);
        if (byte < 0)
            continue;
        bytes.append(text, plain, escape - plain);
        bytes += static_cast<char>(byte);
        plain = escape + 3;
    }
    return bytes.append(text, plain);
}

}
