#pragma once

#include <string_view>

// The scripts that are put into the pages.
namespace tarn::BridgeScripts {

// Declines a browser-promotion card. For document end, in all frames.
std::string_view promoDismissal();

}
