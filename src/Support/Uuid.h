#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// RFC 4122 identifier.
class Uuid {
public:
    // A random (version 4) identifier that nobody can guess.
    static Uuid random();
    // The canonical form of 36 characters, in either case; nothing for any other text.
    static std::optional<Uuid> parse(std::string_view);

    // Canonical form in upper case.
    std::string string() const;

    friend bool operator==(Uuid const&, Uuid const&) = default;
    friend auto operator<=>(Uuid const&, Uuid const&) = default;

private:
    std::array<std::uint8_t, 16> m_bytes {};
};

}
