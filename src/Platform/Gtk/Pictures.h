#pragma once

#include "Platform/Gtk/Ref.h"
#include "Support/Lifetime.h"

#include <gdk/gdk.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

namespace tarn::gtk {

// Reads picture files away from the main thread, one at a time so that large ones do not add up, and keeps the last
// ones. A file of a name is taken to stay as it is.
class Pictures {
public:
    using Completion = std::function<void(Ref<GdkTexture>)>;

    // The square in the middle of the picture, upright, so many pixels wide. Empty when the file is no picture, or one
    // too large to be taken into memory. Completes at once for a picture that was read before.
    void load(std::filesystem::path const&, int size, Completion);

private:
    using Key = std::pair<std::filesystem::path, int>;
    struct Request {
        Key key;
        std::vector<Completion> completions;
    };

    void readNext();
    void finish(Ref<GdkTexture> const&);

    std::deque<std::pair<Key, Ref<GdkTexture>>> m_read;
    // The first one is being read.
    std::deque<Request> m_requests;
    Lifetime m_lifetime;
};

}
