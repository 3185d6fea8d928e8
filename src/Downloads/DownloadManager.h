#pragma once

#include "Downloads/DockProgress.h"
#include "Downloads/DownloadFolder.h"
#include "Downloads/DownloadList.h"
#include "Platform/Download.h"
#include "Platform/NavigationDelegate.h"
#include "Platform/Panels.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace tarn {

// All downloads of the application: asks where each file goes, shows how far they are, and says how they end.
class DownloadManager final : private platform::DownloadDelegate {
public:
    struct Environment {
        platform::Panels& panels;
        platform::UserDefaults& defaults;
        platform::DockTile& dockTile;
        platform::Workspace& workspace;
        // Where the first save panel opens.
        std::filesystem::path userFolder;
        Log log;
    };

    explicit DownloadManager(Environment);
    // What still runs is cancelled.
    ~DownloadManager();

    // Whether the answer is to be saved rather than shown.
    static bool shouldDownload(platform::NavigationResponse const&);

    // Called with the file of a download that has come as a whole.
    std::function<void(std::filesystem::path const&)> onFinished;
    // What a save panel hangs on; nothing unless it is set.
    std::function<platform::SheetParent()> sheetWindow;

    // The last parameter closes the window that was opened for nothing but this download.
    void adopt(std::shared_ptr<platform::Download>, std::function<void()> const& closeEmptyPopup = {});

    DownloadList& list() { return m_list; }

private:
    struct Active {
        std::shared_ptr<platform::Download> download;
        std::uint64_t id { 0 };
        // None until the user has chosen it.
        std::optional<std::filesystem::path> destination {};
    };

    using ActiveDownloads = std::map<platform::Download const*, Active>;
    struct Question {
        std::uint64_t id { 0 };
        std::string name;
        Reply<std::optional<std::filesystem::path>> reply;
    };

    void decideDestination(platform::Download&, std::string const& suggestedFilename,
        Reply<std::optional<std::filesystem::path>>) override;
    void progressDidChange(platform::Download&) override;
    void didFinish(platform::Download&) override;
    void didFail(platform::Download&, std::string const& reason) override;

    // One panel at a time, however many a page starts at once.
    void askNext();
    // Gives back where it goes, if anywhere.
    std::optional<std::filesystem::path> start(std::uint64_t id, std::optional<std::filesystem::path> chosen);
    ActiveDownloads::iterator findActive(std::uint64_t id);
    std::optional<Active> take(platform::Download const&);
    void cancel(std::uint64_t id);
    void updateItem(Active const&, DownloadItem::State);
    void updateDock();

    Environment m_environment;
    DownloadFolder m_folder;
    DockProgress m_dock;
    DownloadList m_list;
    ActiveDownloads m_active;
    std::deque<Question> m_questions;
    bool m_isAsking { false };
    std::uint64_t m_lastID { 0 };
    Lifetime m_lifetime;
};

}
