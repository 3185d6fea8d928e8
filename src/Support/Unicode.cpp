#include "Support/Unicode.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

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
