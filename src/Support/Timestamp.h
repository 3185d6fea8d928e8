#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

using Timestamp = std::chrono::system_clock::time_point;

// ISO 8601 in UTC with whole seconds: 2025-03-01T09:30:00Z.
std::string toIso8601(Timestamp);
// Any ISO 8601 date and time with a zone designator (Z or an offset), with or without a fraction of a second, that a
// Timestamp can hold: years 1678 to 2261.
std::optional<Timestamp> fromIso8601(std::string_view);

}
