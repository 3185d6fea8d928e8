#pragma once

#include <string>
#include <string_view>

// The words of a page in a notification. They are whatever the page likes; what is shown is bounded.
namespace tarn::NotificationText {

// In characters.
inline constexpr std::size_t longestTitle { 200 };
inline constexpr std::size_t longestBody { 2000 };
inline constexpr std::size_t longestForeignBody { 160 };

// Longer text is cut and ends in an ellipsis.
std::string title(std::string_view);

// Anybody may put a frame into a page, and make it look like mail. So the text of a page that is not a Google app's is
// one short paragraph, and its origin is the last line, where the page cannot push it out of sight. The origin is as
// the engine writes it: "https://host", or "null".
std::string body(std::string_view, std::string_view origin);

}
