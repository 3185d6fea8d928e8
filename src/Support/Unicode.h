#pragma once

#include <cstddef>
#include <string_view>

namespace tarn {

inline constexpr char32_t replacementCharacter { 0xFFFD };

// The character at `position` (less than the size), which then moves behind it. Each maximal ill-formed part of UTF-8
// is one replacement character, as in the Encoding standard.
char32_t nextCharacter(std::string_view utf8, std::size_t& position);

bool isUtf8(std::string_view);

// Without the spaces, tabs and line ends at both ends: categories Z*, U+0009 to U+000D and U+0085.
std::string_view withoutOuterSpace(std::string_view utf8);

// General category Nd, of any script.
bool isDecimalDigit(char32_t);

// Any kind of space, line breaks and tabs among them.
bool isWhitespace(char32_t);

// Neither a control, nor a format character (those that change the direction of text, join or hide), nor one without
// meaning of its own (surrogate, private use, unassigned).
bool isVisible(char32_t);

}
