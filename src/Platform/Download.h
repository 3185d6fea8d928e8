#pragma once

#include "Support/Reply.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace tarn::platform {

class Download;

// In bytes.
struct DownloadProgress {
    std::int64_t completed { 0 };
    // -1 where the server does not say.
    std::int64_t total { -1 };

    friend bool operator==(DownloadProgress const&, DownloadProgress const&) = default;
};

// What a download asks and tells its owner.
class DownloadDelegate {
public:
    // Where the file is to go, as an absolute path; nothing cancels the download, silently. The name is the server's or
    // the page's: any text. A file that is there is replaced when the download has come as a whole, not before.
    virtual void decideDestination(
        Download&, std::string const& suggestedFilename, Reply<std::optional<std::filesystem::path>>)
        = 0;
    // A few times a second at most.
    virtual void progressDidChange(Download&) { }
    // One of these two comes, once, and nothing after it. The download may end in the call.
    virtual void didFinish(Download&) { }
    virtual void didFail(Download&, std::string const& /*reason*/) { }

protected:
    ~DownloadDelegate() = default;
};

// A file on its way to the disk. Its identity is its address. Its end cancels what is not finished. A download that
// breaks off leaves nothing at its destination but what was there before.
class Download {
public:
    Download() = default;
    Download(Download const&) = delete;
    Download& operator=(Download const&) = delete;
    virtual ~Download() = default;

    // Outlives the download, or is taken off it. A download that is asked about its destination without a delegate is
    // cancelled.
    virtual void setDelegate(DownloadDelegate*) = 0;
    virtual DownloadProgress progress() const = 0;
    // It then fails.
    virtual void cancel() = 0;
};

}
