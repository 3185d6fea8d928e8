#include "Bridge/UnreadCount.h"

#include "Support/Ascii.h"
#include "Support/Unicode.h"

#include <charconv>
#include <string>

namespace tarn::UnreadCount {

namespace {

// Of any script, off the front.
bool takeDigit(std::string_view& text)
{
    if (text.empty())
        return false;
    std::size_t length = 1;
    if (static_cast<unsigned char>(text.front()) < 0x80) {
        if (!isAsciiDigit(text.front()))
            return false;
    } else {
        length = 0;
        if (!isDecimalDigit(nextCharacter(text, length)))
            return false;
    }
    text.remove_prefix(length);
    return true;
}

bool takeSeparator(std::string_view& text)
{
    if (!text.starts_with(',') && !text.starts_with('.'))
        return false;
    text.remove_prefix(1);
    return true;
}

// 0 also for digits of other scripts, which are not read.
std::int64_t countOf(std::string_view number)
{
    std::string digits(number);
    std::erase_if(digits, [](char character) { return character == ',' || character == '.'; });
    std::int64_t count = 0;
    auto const* const end = digits.data() + digits.size();
    auto const result = std::from_chars(digits.data(), end, count);
    return result.ec == std::errc {} && result.ptr == end ? count : 0;
}

}

std::int64_t parse(std::optional<std::string_view> title)
{
    auto rest = title.value_or("");
    for (auto open = rest.find('('); open != rest.npos; open = rest.find('(')) {
        rest.remove_prefix(open + 1);
        auto const number = rest;
        if (!takeDigit(rest))
            continue;
        while (takeDigit(rest) || takeSeparator(rest)) { }
        if (rest.starts_with(')'))
            return countOf(number.substr(0, number.size() - rest.size()));
    }
    return 0;
}

}
