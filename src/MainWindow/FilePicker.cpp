#include "MainWindow/FilePicker.h"

namespace tarn::FilePicker {

void choose(platform::Panels& panels, platform::OpenPanelParameters const& parameters, platform::WebView& view,
    Reply<std::vector<std::filesystem::path>> reply)
{
    panels.showOpenPanel({ .allowsMultipleSelection = parameters.allowsMultipleSelection,
                             .canChooseDirectories = parameters.allowsDirectories },
        &view, std::move(reply));
}

}
