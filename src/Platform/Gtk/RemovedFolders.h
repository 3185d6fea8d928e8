#pragma once

#include "Platform/Gtk/WebsiteDataStore.h"
#include "Platform/RunLoop.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace tarn::gtk {

// The removed website data of a profile. The engine's network process still writes what it had put off when the last
// view has gone (cached responses: five seconds later), and makes the folders anew for it. An empty file in the place
// of each folder prevents that until nothing can come any more.
class RemovedFolders {
public:
    // Seen in WebKitGTK 2.50 on a busy machine: at most six seconds.
    static constexpr std::chrono::seconds guardTime { 30 };

    // Removes the folders and puts the files in their place. Gives the reason of a failure, or nothing. Blocks.
    static std::optional<std::string> remove(WebsiteFolders const&);

    explicit RemovedFolders(WebsiteFolders);
    // Takes the files away.
    ~RemovedFolders();
    RemovedFolders(RemovedFolders const&) = delete;
    RemovedFolders& operator=(RemovedFolders const&) = delete;

    void setTimer(std::unique_ptr<platform::Timer> timer) { m_timer = std::move(timer); }

private:
    WebsiteFolders m_folders;
    std::unique_ptr<platform::Timer> m_timer;
};

}
