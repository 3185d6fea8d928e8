#pragma once

#include <filesystem>
#include <optional>

namespace tarn::platform {

// A round picture: the image scaled to fill the circle and centred, sharp at any scale of the screen. Without an image,
// or of a file that is no image, the symbol of a person.
struct Avatar {
    std::optional<std::filesystem::path> image {};
    // Diameter, in points.
    int size { 0 };

    friend bool operator==(Avatar const&, Avatar const&) = default;
};

}
