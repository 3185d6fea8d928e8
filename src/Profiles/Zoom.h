#pragma once

#include <optional>

namespace tarn::Zoom {

// Page zoom on a scale of levels: a factor (1.0 is 100 %) is 1.2 raised to the level. Level 0 is factor 1.

inline constexpr double minimumLevel { -3 };
inline constexpr double maximumLevel { 5 };
inline constexpr double step { 0.5 };

// The nearest step of the scale; 0 for what is no positive finite number.
double level(double factor);

// A level beyond an end of the scale counts as that end, one that is not finite as 0.
double factor(double level);

// A stored factor, moved to the nearest one of the scale; 1.0 when there is none or it makes no sense.
double snapped(std::optional<double> stored);

}
