#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tarn::fuzz {

inline std::string_view text(std::uint8_t const* data, std::size_t size)
{
    return { reinterpret_cast<char const*>(data), size };
}

// A property that must hold for every input.
inline void require(bool holds, char const* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "violated: %s\n", property);
    std::abort();
}

}

// One input, as libFuzzer calls it.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
