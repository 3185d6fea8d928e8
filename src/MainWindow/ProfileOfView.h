#pragma once

#include "Platform/WebView.h"
#include "Support/Uuid.h"

#include <functional>

namespace tarn {

// The profile that a page belongs to.
using ProfileOfView = std::function<Uuid(platform::WebView const&)>;

}
