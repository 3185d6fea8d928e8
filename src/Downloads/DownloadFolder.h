#pragma once

#include "Platform/UserDefaults.h"

#include <filesystem>

namespace tarn {

// The folder that the next save panel opens in: where the last download went, also after a restart.
class DownloadFolder {
public:
    // The user's own folder for downloads is the answer until one has been chosen.
    DownloadFolder(platform::UserDefaults&, std::filesystem::path userFolder);

    std::filesystem::path get() const;
    void set(std::filesystem::path const&);

private:
    platform::UserDefaults& m_defaults;
    std::filesystem::path m_userFolder;
};

}
