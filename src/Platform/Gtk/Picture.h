#pragma once

#include "Platform/Gtk/Ref.h"

#include <gdk/gdk.h>

#include <filesystem>
#include <functional>

namespace tarn::gtk {

// Reads a picture file on a thread of its own, scaled down so that its shorter side has about the given number of
// pixels. The completion gets an empty reference when the file is no picture.
void loadPictureAsync(std::filesystem::path const&, int size, std::function<void(Ref<GdkTexture>)> completion);

}
