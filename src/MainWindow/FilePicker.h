#pragma once

#include "Platform/Panels.h"
#include "Platform/UIDelegate.h"

namespace tarn::FilePicker {

// Answers a page's file input with the files that the user chooses, of any type; none when the user cancels.
void choose(platform::Panels&, platform::OpenPanelParameters const&, platform::WebView&,
    Reply<std::vector<std::filesystem::path>>);

}
