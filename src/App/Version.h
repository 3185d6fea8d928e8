#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tarn {

// Numbers with points between them, compared one by one: 2.10 is newer than 2.9, and 2.0 is 2.
class Version {
public:
    // Nothing for anything else, and for more than nine digits in one number.
    static std::optional<Version> parse(std::string_view);

    friend auto operator<=>(Version const&, Version const&) = default;

private:
    std::vector<std::uint32_t> m_numbers;
};

}
