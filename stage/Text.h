#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarn::stage {

// Without spaces and control characters.
bool isPrintableAscii(std::string_view);
// Safe as text and as an attribute's value in either kind of quotes.
std::string escapeHtml(std::string_view);
// Safe as one value of a query.
std::string escapeQueryValue(std::string_view);
// Nothing when an escape is broken or stands for NUL or one of the refused characters, or when the result is not UTF-8.
std::optional<std::string> percentDecoded(std::string_view, char const* refused = nullptr);
// The first value of that name in a query or in the body of an application/x-www-form-urlencoded form, decoded.
std::optional<std::string> formValue(std::string_view form, std::string_view name);
// The first value of that name in a Cookie header.
std::optional<std::string> cookieValue(std::string_view cookies, std::string_view name);

}
