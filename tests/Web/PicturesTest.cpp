#include "Platform/Gtk/Pictures.h"

#include "Support/TemporaryFolder.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace tarn {
namespace {

constexpr int size = 32;
constexpr std::uint32_t red = 0xff0000ff;
constexpr std::uint32_t blue = 0x0000ffff;

// Red, with a blue part from one row to another.
std::string jpeg(int width, int height, int from, int to)
{
    auto const picture = gtk::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
    gdk_pixbuf_fill(picture.get(), red);
    auto const part = gtk::adopt(gdk_pixbuf_new_subpixbuf(picture.get(), 0, from, width, to - from));
    gdk_pixbuf_fill(part.get(), blue);
    g_autofree char* bytes = nullptr;
    gsize length = 0;
    gdk_pixbuf_save_to_buffer(picture.get(), &bytes, &length, "jpeg", nullptr, nullptr);
    return { bytes, length };
}

// As a camera does that was held upright: to be turned clockwise by a quarter.
std::string turned(std::string const& picture)
{
    using namespace std::string_literals;
    auto const tag = "\xff\xe1\0\x22"s + "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0"s;
    return picture.substr(0, 2) + tag + picture.substr(2);
}

// Of a pixel: 'r', 'b', or something between.
char colour(GdkTexture* texture, int x, int y)
{
    std::vector<guchar> pixels(static_cast<std::size_t>(size) * size * 4);
    gdk_texture_download(texture, pixels.data(), size * std::size_t { 4 });
    auto const* const pixel = &pixels[static_cast<std::size_t>(y * size + x) * 4];
    return pixel[2] > 200 && pixel[0] < 60 ? 'r' : pixel[0] > 200 && pixel[2] < 60 ? 'b' : '?';
}

TEST(Pictures, AreTheUprightSquareInTheMiddle)
{
    struct Case {
        char const* what;
        std::string file;
        // Top left, top right, bottom left, bottom right; empty when there is no picture.
        std::string corners;
    };
    TemporaryFolder const folder;
    gtk::Pictures pictures;
    for (auto const& [what, content, corners] : {
             Case { "square", jpeg(400, 400, 0, 200), "bbrr" },
             Case { "turned", turned(jpeg(400, 400, 0, 200)), "rbrb" },
             Case { "turned landscape", turned(jpeg(900, 300, 0, 150)), "rbrb" },
             Case { "portrait", jpeg(100, 400, 150, 250), "bbbb" },
             Case { "small", jpeg(16, 16, 0, 8), "bbrr" },
             Case { "strip", jpeg(1, 10'000, 4'000, 6'000), "bbbb" },
             Case { "no picture", "not a picture", "" },
             Case { "broken", jpeg(400, 400, 0, 200).substr(0, 300), "" },
             Case { "empty", "", "" },
         }) {
        auto const file = folder / what;
        std::ofstream(file, std::ios::binary) << content;
        std::optional<std::string> found;
        pictures.load(file, size, [&](gtk::Ref<GdkTexture> const& texture) {
            found.emplace();
            for (int const y : { 1, size - 2 }) {
                for (int const x : { 1, size - 2 })
                    *found += texture ? std::string { colour(texture.get(), x, y) } : std::string();
            }
        });
        while (!found)
            g_main_context_iteration(nullptr, TRUE);
        EXPECT_EQ(*found, corners) << what;
    }
}

}
}
