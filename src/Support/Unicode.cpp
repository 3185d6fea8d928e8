#include "Support/Unicode.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace tarn {

char32_t nextCharacter(std::string_view utf8, std::size_t& position)
{
    UChar32 character {};
    U8_NEXT_OR_FFFD(utf8, position, utf8.size(), character);
    return static_cast<char32_t>(character);
}

bool isUtf8(std::string_view text)
{
    for (std::size_t position = 0; position < text.size();) {
        UChar32 character {};
        U8_NEXT(text, position, text.size(), character);
        if (character < 0)
            return false;
    }
    return true;
}

std::string_view withoutOuterSpace(std::string_view utf8)
{
    auto const isSpace = [](char32_t character) {
        auto const value = static_cast<UChar32>(character);
        return (U_GET_GC_MASK(value) & U_GC_Z_MASK) != 0 || (value >= 0x09 && value <= 0x0D) || value == 0x85;
    };
    std::size_t begin = utf8.size();
    std::size_t end = utf8.size();
    for (std::size_t position = 0; position < utf8.size();) {
        auto const start = position;
        if (isSpace(nextCharacter(utf8, position)))
            continue;
        begin = std::min(begin, start);
        end = position;
    }
    return utf8.substr(begin, end - begin);
}

bool isDecimalDigit(char32_t character)
{
    return u_charType(static_cast<UChar32>(character)) == U_DECIMAL_DIGIT_NUMBER;
}

bool isWhitespace(char32_t character)
{
    return u_isUWhiteSpace(static_cast<UChar32>(character));
}

bool isVisible(char32_t character)
{
    return (U_MASK(u_charType(static_cast<UChar32>(character))) & U_GC_C_MASK) == 0;
}

}
