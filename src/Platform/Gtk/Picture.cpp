#include "Platform/Gtk/Picture.h"

#include "Platform/Gtk/BackgroundTask.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>

namespace tarn::gtk {

namespace {

Ref<GdkPixbuf> readScaled(std::filesystem::path const& file, int size)
{
    int width = 0;
    int height = 0;
    if (!gdk_pixbuf_get_file_info(file.c_str(), &width, &height) || width <= 0 || height <= 0)
        return {};
    bool const portrait = height > width;
    auto const raw = adopt(
        gdk_pixbuf_new_from_file_at_scale(file.c_str(), portrait ? size : -1, portrait ? -1 : size, TRUE, nullptr));
    return raw ? adopt(gdk_pixbuf_apply_embedded_orientation(raw.get())) : raw;
}

}

void loadPictureAsync(std::filesystem::path const& file, int size, std::function<void(Ref<GdkTexture>)> completion)
{
    runInBackground<Ref<GdkPixbuf>>([file, size] { return readScaled(file, std::max(size, 1)); },
        [completion = std::move(completion)](Ref<GdkPixbuf> const& pixbuf) {
            completion(pixbuf ? adopt(gdk_texture_new_for_pixbuf(pixbuf.get())) : Ref<GdkTexture> {});
        });
}

}
