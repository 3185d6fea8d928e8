#include "Platform/Gtk/Pictures.h"

#include "Platform/Gtk/BackgroundTask.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>

namespace tarn::gtk {

namespace {

constexpr std::size_t mostKept = 64;
// What may be in memory at a time, for a moment.
constexpr double mostPixels = 50e6;

struct Header {
    int width { 0 };
    int height { 0 };
    // Made smaller while it is read.
    bool shrinks { false };
    // Made for a size.
    bool isDrawing { false };
};

// Whether a JPEG file comes in several passes over the whole picture: its reader then keeps all of it in memory,
// however small the result.
bool isProgressive(std::filesystem::path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    stream.ignore(2);
    for (std::array<unsigned char, 4> segment {};
         stream.read(reinterpret_cast<char*>(segment.data()), segment.size());) {
        int const marker = segment[1];
        // One of the kinds of frames, which share their range with tables.
        if (marker == 0xc0 || (marker > 0xc0 && marker <= 0xcf && marker % 4 != 0))
            return marker % 4 == 2;
        stream.ignore((segment[2] << 8) + segment[3] - 2);
    }
    return true;
}

Header readHeader(std::filesystem::path const& file)
{
    Header header;
    auto* const format = gdk_pixbuf_get_file_info(file.c_str(), &header.width, &header.height);
    if (!format)
        return {};
    auto* const name = gdk_pixbuf_format_get_name(format);
    header.shrinks = std::string_view(name) == "jpeg" && !isProgressive(file);
    header.isDrawing = std::string_view(name) == "svg";
    g_free(name);
    return header;
}

Ref<GdkPixbuf> read(std::filesystem::path const& file, int size)
{
    auto const header = readHeader(file);
    if (header.width <= 0 || header.height <= 0)
        return {};
    bool const isPortrait = header.height > header.width;
    double const shorter = std::min(header.width, header.height);
    double const longer = std::max(header.width, header.height);
    double const pixels = shorter * longer;
    // With the shorter side as long as needed. A strip would become huge.
    double const scaledPixels = size * (size * longer / shorter);
    bool const scales = scaledPixels < pixels || (header.isDrawing && scaledPixels <= mostPixels);
    if (!(scales && (header.shrinks || header.isDrawing)) && pixels > mostPixels)
        return {};
    return adopt(scales ? gdk_pixbuf_new_from_file_at_scale(
                     file.c_str(), isPortrait ? size : -1, isPortrait ? -1 : size, TRUE, nullptr)
                        : gdk_pixbuf_new_from_file(file.c_str(), nullptr));
}

Ref<GdkPixbuf> readSquare(std::filesystem::path const& file, int size)
{
    auto const raw = read(file, size);
    if (!raw)
        return {};
    auto const upright = adopt(gdk_pixbuf_apply_embedded_orientation(raw.get()));
    int const width = gdk_pixbuf_get_width(upright.get());
    int const height = gdk_pixbuf_get_height(upright.get());
    int const side = std::min(width, height);
    auto const square
        = adopt(gdk_pixbuf_new_subpixbuf(upright.get(), (width - side) / 2, (height - side) / 2, side, side));
    // Scaled in any case: the square alone would keep the whole picture in memory.
    return adopt(gdk_pixbuf_scale_simple(square.get(), size, size, GDK_INTERP_BILINEAR));
}

}

void Pictures::load(std::filesystem::path const& file, int size, Completion completion)
{
    Key key { file, std::max(size, 1) };
    if (auto const read = std::ranges::find(m_read, key, [](auto const& entry) { return entry.first; });
        read != m_read.end()) {
        completion(Ref<GdkTexture>(read->second));
        return;
    }
    if (auto const same = std::ranges::find(m_requests, key, &Request::key); same != m_requests.end()) {
        same->completions.push_back(std::move(completion));
        return;
    }
    m_requests.push_back({ std::move(key), { std::move(completion) } });
    if (m_requests.size() == 1)
        readNext();
}

void Pictures::readNext()
{
    runInBackground<Ref<GdkPixbuf>>([key = m_requests.front().key] { return readSquare(key.first, key.second); },
        m_lifetime.guard([this](Ref<GdkPixbuf> const& pixbuf) {
            finish(pixbuf ? adopt(gdk_texture_new_for_pixbuf(pixbuf.get())) : Ref<GdkTexture> {});
        }));
}

void Pictures::finish(Ref<GdkTexture> const& texture)
{
    auto const request = std::move(m_requests.front());
    m_requests.pop_front();
    if (texture)
        m_read.emplace_front(request.key, texture);
    if (m_read.size() > mostKept)
        m_read.pop_back();
    if (!m_requests.empty())
        readNext();
    for (auto const& completion : request.completions)
        completion(texture);
}

}
