#include "Profiles/Zoom.h"

#include <algorithm>
#include <cmath>

namespace tarn::Zoom {

namespace {

constexpr double base { 1.2 };

}

double level(double factor)
{
    if (!std::isfinite(factor) || factor <= 0)
        return 0;
    auto const exact = std::log(factor) / std::log(base);
    return std::clamp(std::round(exact / step) * step, minimumLevel, maximumLevel);
}

double factor(double level)
{
    return std::pow(base, std::isfinite(level) ? std::clamp(level, minimumLevel, maximumLevel) : 0);
}

double snapped(std::optional<double> stored)
{
    return stored ? factor(level(*stored)) : 1.0;
}

}
